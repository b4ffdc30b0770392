// More about the disks and partitions that the first mapping has, from the data types it read them from and
// from SPStorageDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Storage/Details/HDD:n" and "/Storage/Details/partition:n" beside the elements of
// "/Storage/Physical-disks" and "/Storage/Logical-disks" with the same numbers. To be run before the lists
// are continued. A disk is found again by its model, a partition by its BSD name.
void collect_storage_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
