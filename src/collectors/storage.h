// Disks with their partitions, and optical drives, from the profiler's SPSerialATADataType,
// SPParallelSCSIDataType and SPParallelATADataType.
#pragma once

#include <vector>

#include "zxml/zXML.h"

// Writes hard disks to "/Storage/Physical-disks/HDD:%d", optical drives to "/Storage/Physical-disks/CD:%d"
// and the named volumes of the hard disks to "/Storage/Logical-disks/partition:%d"; each kind is numbered
// from 1 through all three data types.
//
// A serial ATA device without SMART status (smart_status missing, or "Not Supported") is an optical drive,
// every other one a hard disk, and so is every parallel SCSI device; every parallel ATA device is an optical
// drive. A disk's "size" is in whole GB of 10^9 bytes, and a fact whose key is missing is not written;
// "partitions" counts the volumes written.
//
// Size texts of the profiler tree get their decimal comma replaced (see units.h).
void collect_storage(InventoryTree& snapshot, InventoryTree& profiler);

// The devices of the profiler tree that become hard disks, in the order of their numbers from 1 on.
std::vector<const Tag*> hard_disks(const InventoryTree& profiler);
// The volumes of such a disk that become partitions, in the order of theirs.
std::vector<const Tag*> named_volumes(const Tag& disk);
