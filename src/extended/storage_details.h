// More about the disks and partitions of the default scan, from the data types they were read from and from
// SPStorageDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Storage/Details/HDD:n" and "/Storage/Details/partition:n" for the elements of
// "/Storage/Physical-disks" and "/Storage/Logical-disks" with the same numbers. Must run before those lists
// are continued. SPStorageDataType is matched by a disk's model and a partition's BSD name.
void collect_storage_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
