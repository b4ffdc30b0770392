// The volumes of the profiler's SPStorageDataType and the drives they are on, as the collectors of disks and
// volumes read them alike.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "collectors/volumes.h"
#include "extended/facts.h"

// The volumes in the profiler's order, without those that are files of the system itself: disk images, and
// what stands below the place where an update is made ready.
std::vector<const Tag*> storage_volumes(const InventoryTree& additional);

// The drives of a volume: one, or those of a logical volume that spans several.
std::vector<const Tag*> drives_of(const Tag& volume);
// The model of a drive; none when it is not told.
const char* drive_model(const Tag& drive);

// Tags by a name that tells them apart, the first of each; none for none, and for a name that is not there.
using TagIndex = std::unordered_map<std::string, const Tag*>;
const Tag* find_tag(const TagIndex& index, const char* name);
// The drives of all volumes.
TagIndex drives_by_model(const std::vector<const Tag*>& volumes);

// "disk3" of "disk3s1s1": of an APFS volume the container, of any other the disk. The whole name where it has
// no such form.
std::string whole_disk(const char* bsd_name);

// Whether an amount of space is told, in bytes or as a text.
bool tells_space(const Tag& item, const SpaceKeys& keys);

// What a drive says of itself: "medium", "smart-status", "partition-map", "internal".
void write_drive_facts(Place& disk, const Tag& drive);
// What a volume says beside its name, place, format and space: "uuid", "writable", "encrypted", the
// "container" of an APFS volume, whose size and free space it shares with its neighbours, the "disk" and how
// that is connected.
void write_volume_facts(Place& partition, const Tag& volume);
