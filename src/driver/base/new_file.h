// Files that are made anew, for their owner alone, and never in the place of anything.
#pragma once

#include <cstddef>

// A descriptor to write to the new file. -1 with the reason in errno when it cannot be made; EEXIST where
// anything stands at the path, be it a link that leads nowhere.
int create_new_file(const char* path);

// Makes the file with this content and sees it written to the disk. False with the reason in errno, as above
// or of the write that failed, and then no file is left.
[[nodiscard]] bool write_new_file(const char* path, const unsigned char* data, size_t length);
