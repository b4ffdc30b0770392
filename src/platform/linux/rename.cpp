#include "platform/rename.h"

#include <fcntl.h>

#include <cstdio>

int rename_exclusively(const char* name, const char* new_name) {
  return renameat2(AT_FDCWD, name, AT_FDCWD, new_name, RENAME_NOREPLACE);
}
