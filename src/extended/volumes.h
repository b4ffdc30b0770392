// The mounted volumes that no disk's list of partitions has, above all those of APFS containers, from the
// profiler's SPStorageDataType.
#pragma once

#include "extended/inputs.h"

// Continues "/Storage/Logical-disks/partition:n". A volume is listed already when a partition has its BSD
// name, or both its name and its mount point.
//
// Every volume of an APFS container reports the container's size and free space as its own, so these must not
// be added up.
void collect_volumes(InventoryTree& snapshot, const ExtendedInputs& inputs);
