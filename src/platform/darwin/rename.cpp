#include "platform/rename.h"

#include <cstdio>

int rename_exclusively(const char* name, const char* new_name) {
  return renamex_np(name, new_name, RENAME_EXCL);
}
