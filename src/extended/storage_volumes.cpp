#include "extended/storage_volumes.h"

#include <cstring>

namespace {

constexpr char kUpdatePlace[] = "/System/Volumes/Update";
constexpr char kLogicalVolume[] = "com.apple.corestorage.lv";
constexpr char kPhysicalVolumes[] = "com.apple.corestorage.pv";

constexpr CopiedField kDriveFields[] = {
    {"medium_type", "medium"},
    {"smart_status", "smart-status"},
    {"partition_map_type", "partition-map"},
};
constexpr CopiedField kDriveSwitches[] = {{"is_internal_disk", "internal"}};
constexpr CopiedField kVolumeFields[] = {{"volume_uuid", "uuid"}};
constexpr CopiedField kVolumeSwitches[] = {{"writable", "writable"}};
constexpr CopiedField kEncryptionSwitches[] = {{"com.apple.corestorage.lv.encrypted", "encrypted"}};
constexpr CopiedField kConnectionFields[] = {{"protocol", "protocol"}};

bool is_on_disk_image(const Tag& volume) {
  const Tag* drive = volume.find_child("physical_drive");
  return drive && text_is(*drive, "protocol", "Disk Image");
}

bool is_of_update(const Tag& volume) {
  const char* mount_point = find_text(volume, "mount_point");
  const size_t length = std::strlen(kUpdatePlace);
  if (!mount_point || std::strncmp(mount_point, kUpdatePlace, length) != 0) return false;
  return mount_point[length] == '/' || mount_point[length] == '\0';
}

void write_container(Place& partition, const Tag& volume) {
  const char* format = find_text(volume, "file_system");
  const char* bsd_name = find_text(volume, "bsd_name");
  if (!format || !std::strstr(format, "APFS") || !bsd_name) return;
  set_text(partition, "container", whole_disk(bsd_name).c_str());
}

void write_disks(Place& partition, const std::vector<const Tag*>& drives) {
  std::vector<const char*> models;
  for (const Tag* drive : drives) {
    if (const char* model = drive_model(*drive)) models.push_back(model);
  }
  set_joined(partition, "disk", models);
  if (drives.empty()) return;
  copy_switches(partition, *drives.front(), kDriveSwitches);
  copy_fields(partition, *drives.front(), kConnectionFields);
}

}  // namespace

std::vector<const Tag*> storage_volumes(const InventoryTree& additional) {
  std::vector<const Tag*> volumes;
  const Tag* items = find_items(additional, "SPStorageDataType");
  if (!items) return volumes;
  for (const auto& item : items->children()) {
    if (!is_on_disk_image(*item) && !is_of_update(*item)) volumes.push_back(item.get());
  }
  return volumes;
}

std::vector<const Tag*> drives_of(const Tag& volume) {
  std::vector<const Tag*> drives;
  if (const Tag* drive = volume.find_child("physical_drive")) {
    drives.push_back(drive);
  } else if (const Tag* physical_volumes = find_list(volume, kPhysicalVolumes)) {
    for (const auto& physical_volume : physical_volumes->children()) drives.push_back(physical_volume.get());
  }
  return drives;
}

const char* drive_model(const Tag& drive) { return find_text(drive, "device_name"); }

const Tag* find_tag(const TagIndex& index, const char* name) {
  const auto entry = name ? index.find(name) : index.end();
  return entry == index.end() ? nullptr : entry->second;
}

TagIndex drives_by_model(const std::vector<const Tag*>& volumes) {
  TagIndex drives;
  for (const Tag* volume : volumes) {
    for (const Tag* drive : drives_of(*volume)) {
      if (const char* model = drive_model(*drive)) drives.emplace(model, drive);
    }
  }
  return drives;
}

std::string whole_disk(const char* bsd_name) {
  constexpr char kDisk[] = "disk";
  constexpr char kDigits[] = "0123456789";
  const size_t start = std::strlen(kDisk);
  if (std::strncmp(bsd_name, kDisk, start) != 0) return bsd_name;
  return std::string(bsd_name, start + std::strspn(bsd_name + start, kDigits));
}

bool has_space(const Tag& item, const SpaceKeys& keys) {
  const Value* bytes = find_value(item, keys.bytes);
  return (bytes && bytes->kind() == Value::Kind::int64) || find_text(item, keys.text);
}

void write_drive_facts(Place& disk, const Tag& drive) {
  copy_fields(disk, drive, kDriveFields);
  copy_switches(disk, drive, kDriveSwitches);
}

void write_volume_facts(Place& partition, const Tag& volume) {
  copy_fields(partition, volume, kVolumeFields);
  copy_switches(partition, volume, kVolumeSwitches);
  if (const Tag* logical = volume.find_child(kLogicalVolume))
    copy_switches(partition, *logical, kEncryptionSwitches);
  write_container(partition, volume);
  write_disks(partition, drives_of(volume));
}
