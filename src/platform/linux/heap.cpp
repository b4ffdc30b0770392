#include <malloc.h>

#include "platform/heap.h"

void prepare_heap() {
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MXFAST, 0);
}
