// How the C library's heap treats large blocks.
#pragma once

// Lets it keep the large blocks that are freed during a scan for the next ones. glibc asks the system for each
// and hands each back at once, so that every page of a growing document is made, and cleared, again and again.
// To be called before the first allocation of that kind; macOS keeps large blocks by itself.
void keep_freed_memory();
