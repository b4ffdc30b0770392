// The disks that the first mapping does not know: NVMe disks (SPNVMeDataType), disks on USB as the systems
// since 10.12 list them (the Media of an entry of SPUSBDataType), and those of which only their volumes tell
// (SPStorageDataType).
#pragma once

#include "extended/inputs.h"

// Goes on with "/Storage/Physical-disks/HDD:n" for disks inside the Mac and "Removable:n" for those outside.
// "source" names the data type. "partitions" counts the named volumes that the source lists for the disk.
//
// Of a disk that only its volumes tell no size is known. Such disks are told apart by their model, and those
// without a model by the disk, or APFS container, of their volumes; one that an earlier list has, by either,
// is not repeated.
void collect_disks(InventoryTree& snapshot, const ExtendedInputs& inputs);
