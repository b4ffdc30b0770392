// The C library's heap, set up for a scan: documents of megabytes that grow by doubling, then a few trees
// that are built once and freed whole.
#pragma once

// To be called before anything is allocated. glibc would ask the system for every large block and hand it
// back at once, so that each page of a growing document is cleared again and again; it would give up freed
// memory in the middle of freeing; and it would walk freed nodes twice before it joins them. macOS does none
// of that.
void prepare_heap();
