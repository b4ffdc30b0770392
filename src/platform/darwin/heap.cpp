#include "platform/heap.h"

void prepare_heap() {}
