// The volumes of the profiler's SPStorageDataType and the drives they are on, for the collectors of disks and
// of volumes.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "collectors/volumes.h"
#include "extended/facts.h"

// The volumes in the profiler's order, without disk images and the volumes on which the system prepares an
// update.
std::vector<const Tag*> storage_volumes(const InventoryTree& additional);

// The drives of a volume: one, or those of a logical volume that spans several.
std::vector<const Tag*> drives_of(const Tag& volume);
// The model of a drive; null when there is none.
const char* drive_model(const Tag& drive);

// The first tag of each name. find_tag returns null for null and for an unknown name.
using TagIndex = std::unordered_map<std::string, const Tag*>;
const Tag* find_tag(const TagIndex& index, const char* name);
// The drives of all volumes.
TagIndex drives_by_model(const std::vector<const Tag*>& volumes);

// "disk3" for "disk3s1s1": the container of an APFS volume, the disk of any other. A name of another form is
// returned whole.
std::string whole_disk(const char* bsd_name);

// Whether an item gives an amount of space, in bytes or as a text.
bool has_space(const Tag& item, const SpaceKeys& keys);

// Writes a drive's "medium", "smart-status", "partition-map" and "internal".
void write_drive_facts(Place& disk, const Tag& drive);
// Writes a volume's "uuid", "writable", "encrypted", the "container" of an APFS volume, which shares its size
// and free space with the container's other volumes, the "disk" and how that is connected.
void write_volume_facts(Place& partition, const Tag& volume);
