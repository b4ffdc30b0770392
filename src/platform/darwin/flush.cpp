#include <fcntl.h>
#include <unistd.h>

#include "platform/flush.h"

// fsync ends when the drive has the data, in a cache of its own that is lost with the power. Not every file
// system, and no share, can have that cache emptied too.
bool flush_to_disk(int descriptor) { return fcntl(descriptor, F_FULLFSYNC) == 0 || fsync(descriptor) == 0; }
