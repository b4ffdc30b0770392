// The disks that the default scan does not know: NVMe disks (SPNVMeDataType), USB disks as systems
// since 10.12 list them (the Media of an entry of SPUSBDataType), and those known only from their volumes
// (SPStorageDataType).
#pragma once

#include "extended/inputs.h"

// Continues "/Storage/Physical-disks/HDD:n" with internal disks and "Removable:n" with external ones.
// "source" names the data type. "partitions" counts the named volumes that the source lists for the disk.
//
// A disk known only from its volumes has no size. Such disks are distinguished by their model or, without a
// model, by the disk or APFS container of their volumes; one that an earlier list has, by either, is not
// repeated.
void collect_disks(InventoryTree& snapshot, const ExtendedInputs& inputs);
