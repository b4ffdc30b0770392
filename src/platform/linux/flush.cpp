#include <unistd.h>

#include "platform/flush.h"

bool flush_to_disk(int descriptor) { return fsync(descriptor) == 0; }
