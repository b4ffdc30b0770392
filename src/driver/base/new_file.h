// Files that are newly created, readable by their owner only, and never replace anything.
#pragma once

#include <cstddef>

// A descriptor to write to the new file. -1 with the reason in errno when it cannot be created; EEXIST when
// the path exists, even as a dangling link.
int create_new_file(const char* path);

// Creates the file with this content and flushes it to the disk. False, with the reason in errno and no file
// left, when that fails.
[[nodiscard]] bool write_new_file(const char* path, const unsigned char* data, size_t length);
