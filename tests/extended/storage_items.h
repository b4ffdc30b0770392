// Disks and volumes as the profiler lists them, for the tests of the collectors that join them.
#pragma once

#include "tests/extended/mac.h"

constexpr char kSataType[] = "SPSerialATADataType";
constexpr char kNvmeType[] = "SPNVMeDataType";
constexpr char kUsbType[] = "SPUSBDataType";
constexpr char kStorageType[] = "SPStorageDataType";

inline Item controller(std::initializer_list<Item> devices) { return holding("_items", devices); }

// A volume of SPStorageDataType.
inline Item volume(const char* name, const char* bsd_name, const char* mount_point) {
  return {{"_name", name}, {"bsd_name", bsd_name}, {"mount_point", mount_point}};
}

inline Item with(Item item, const Item& more) {
  item.insert(item.end(), more.begin(), more.end());
  return item;
}

// The drive of a volume.
inline Item on_drive(const char* model, const char* protocol, const char* is_internal) {
  return {{"physical_drive/device_name", model},
          {"physical_drive/protocol", protocol},
          {"physical_drive/is_internal_disk", is_internal}};
}

// Lists a volume, with what else is known about it.
inline void add_volume(Mac& mac, const Item& volume, const Item& more = {}) {
  add_item(mac.additional, kStorageType, with(volume, more));
}

inline std::string disks(const std::string& lines) {
  return in_snapshot("+Storage=\n+Physical-disks=\n" + lines + "-\n-\n");
}
inline std::string partitions(const std::string& lines) {
  return in_snapshot("+Storage=\n+Logical-disks=\n" + lines + "-\n-\n");
}
inline std::string details(const std::string& lines) {
  return in_snapshot("+Storage=\n+Details=\n" + lines + "-\n-\n");
}
