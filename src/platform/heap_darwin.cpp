#include "platform/heap.h"

void keep_freed_memory() {}
