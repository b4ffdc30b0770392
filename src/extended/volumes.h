// The mounted volumes that no list of partitions of a disk has, from the profiler's SPStorageDataType: those
// of APFS containers above all.
#pragma once

#include "extended/inputs.h"

// Goes on with "/Storage/Logical-disks/partition:n". A volume is listed already when a partition has its BSD
// name, or its name and mount point.
//
// All volumes of an APFS container tell the container's size and free space as their own, so these must not
// be added up.
void collect_volumes(InventoryTree& snapshot, const ExtendedInputs& inputs);
