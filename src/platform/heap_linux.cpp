#include <malloc.h>

#include "platform/heap.h"

void keep_freed_memory() { mallopt(M_MMAP_THRESHOLD, 32 << 20); }
