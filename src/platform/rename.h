// Renaming a file to a name that nothing has.
#pragma once

// 0 when the file has the new name; otherwise -1 with the reason in errno, and nothing has changed: EEXIST
// where something has that name already, and other reasons where the file system does not do this in one
// step.
int rename_exclusively(const char* name, const char* new_name);
