#include "collectors/usb.h"

#include <cstring>
#include <string>
#include <vector>

#include "collectors/free_numbers.h"
#include "collectors/volumes.h"
#include "driver/base/command.h"
#include "driver/base/progress.h"
#include "profiler/units.h"

namespace {

constexpr uint32_t kDiskutilChunk = 200;
// One page each, for more disks than can be plugged in.
constexpr SeriesLimits kDiskutilLimits = {1u << 20, 64u << 20, 1000, 3};

constexpr CopiedField kDiskFields[] = {
    {"bcd_device", "bcd-device"},         {"serial_num", "serial"},   {"manufacturer", "manufacturer"},
    {"bus_power_used", "bus-power-used"}, {"bus_power", "bus-power"},
};

constexpr CopiedField kDeviceFields[] = {
    {"product_id", "product-id"},         {"vendor_id", "vendor-id"}, {"bcd_device", "bcd-device"},
    {"serial_num", "serial-number"},      {"manufacturer", "manuf"},  {"bus_power", "bus-power"},
    {"bus_power_used", "bus-power-used"},
};

constexpr CopiedField kVolumeFields[] = {
    {"file_system", "file-sys"}, {"bsd_name", "bsd-name"}, {"mount_point", "mount-point"}};

// The console has one set of codes for the speed of a disk and another for that of any other device.
const char* disk_speed(const char* speed) {
  if (equal_text(speed, "full_speed")) return "1";
  return equal_text(speed, "low_speed") ? "0" : "2";
}

// Null for a speed without a code.
const char* device_speed(const char* speed) {
  if (equal_text(speed, "full_speed")) return "1";
  if (equal_text(speed, "low_speed")) return "1.5";
  return equal_text(speed, "high_speed") ? "480" : nullptr;
}

// Mac OS X 10.5 sorts the keys of an entry by a letter in front: "a_product_id", "b_vendor_id".
std::string_view without_prefix(std::string_view key) {
  return key.size() > 1 && key[1] == '_' ? key.substr(2) : key;
}

// Copies the attribute when the table has its key.
template <size_t count>
void copy_if_listed(Place& element, std::string_view key, const Value& value,
                    const CopiedField (&fields)[count]) {
  for (const CopiedField& field : fields) {
    if (key == field.key) element.set_attribute(field.name, value);
  }
}

// A name that the shell passes on unchanged.
bool is_plain_name(const char* name) {
  constexpr char kPlain[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/-";
  return *name != '\0' && name[std::strspn(name, kPlain)] == '\0';
}

// Null if the disk utility is not run or does not know it.
Text media_name(CommandSeries& diskutil, const char* bsd_name) {
  if (!is_plain_name(bsd_name)) return nullptr;
  announce("Removable disks");
  uint32_t length = 0;
  const Text output = diskutil.run(format_string("diskutil info /dev/%s", bsd_name).get(), &length);
  return output ? parse_media_name(output.get()) : nullptr;
}

class UsbWriter {
 public:
  UsbWriter(InventoryTree& snapshot, int& counter)
      : devices_(snapshot.root(), "/Peripherals/USB"),
        disks_(snapshot.root(), "/Storage/Physical-disks"),
        partitions_(snapshot.root(), "/Storage/Logical-disks"),
        disk_numbers_(snapshot, {"Storage", "Physical-disks"}, "Removable:"),
        partition_numbers_(snapshot, {"Storage", "Logical-disks"}, "partition:"),
        counter_(counter) {}

  // Hubs nest in hubs as deep as the machine says, so the entries still to come are kept in a list, the next
  // one last.
  void add_entry(const Tag& entry) {
    std::vector<const Tag*> pending = {&entry};
    while (!pending.empty()) {
      const Tag& next = *pending.back();
      pending.pop_back();
      if (text_is(next, "removable_media", "yes"))
        add_removable_disk(next);
      else if (const Tag* items = find_items(next))
        for (auto item = items->children().rbegin(); item != items->children().rend(); ++item)
          pending.push_back(item->get());
      else
        add_device(next);
    }
  }

 private:
  void add_device(const Tag& entry) {
    Place device(devices_, "Device:" + std::to_string(++counter_), Place::Names::distinct);
    copy_element_value(device, entry, "_name");
    for (const auto& attribute : entry.attributes()) {
      const std::string_view key = without_prefix(attribute->name());
      copy_if_listed(device, key, attribute->value(), kDeviceFields);
      const char* speed = key == "device_speed" ? device_speed(text_of(attribute->value())) : nullptr;
      if (speed) device.set_attribute("device-speed", text_value(speed));
    }
  }

  void add_removable_disk(const Tag& entry) {
    Place disk(disks_, disk_numbers_.next_name(), Place::Names::unused);
    copy_element_value(disk, entry, "_name");
    disk.set_attribute("media-type", text_value("2"));
    for (const auto& attribute : entry.attributes()) {
      const std::string_view key = without_prefix(attribute->name());
      copy_if_listed(disk, key, attribute->value(), kDiskFields);
      if (char* text = text_of(attribute->value())) write_disk_fact(disk, entry, key, text);
    }
    disk.set_attribute("interface", text_value("USB"));
    if (const Tag* volumes = find_list(entry, "volumes"))
      disk.set_attribute("partitions", Value(add_partitions(*volumes)));
  }

  // Those facts of a removable disk that are not mere copies of a key but read from its text.
  void write_disk_fact(Place& disk, const Tag& entry, std::string_view key, char* text) {
    if (key == "device_speed") {
      disk.set_attribute("device-speed", text_value(disk_speed(text)));
    } else if (key == "bsd_name") {
      const Text model = media_name(diskutil_, text);
      if (model) disk.set_attribute("model", text_value(model.get()));
    } else if (key == "size") {
      disk.set_attribute("size", Value(truncate_to_int64(size_to_decimal_gb(text, true))));
      if (find_value(entry, "size_in_bytes"))
        disk.annotate_attribute("size", "base-value",
                                byte_count_text(find_integer(entry, "size_in_bytes")).get());
    }
  }

  // The number of partitions added. A volume that is not mounted has no free space and does not count.
  int64_t add_partitions(const Tag& volumes) {
    int64_t count = 0;
    for (const auto& volume : volumes.children()) {
      if (!find_value(*volume, "_name") || !find_text(*volume, "free_space")) continue;
      add_partition(*volume);
      ++count;
    }
    return count;
  }

  void add_partition(const Tag& volume) {
    Place partition(partitions_, partition_numbers_.next_name(), Place::Names::unused);
    copy_element_value(partition, volume, "_name");
    copy_fields(partition, volume, kVolumeFields);
    const VolumeSpace space = write_volume_space(partition, volume);
    if (space.size != 0) write_used_share(partition, space);
  }

  Place devices_;
  Place disks_;
  Place partitions_;
  FreeNumbers disk_numbers_;
  FreeNumbers partition_numbers_;
  CommandSeries diskutil_{kDiskutilChunk, kDiskutilLimits, "diskutil info /dev/DEVICE"};
  int& counter_;
};

}  // namespace

void collect_usb(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* buses = find_items(profiler, "SPUSBDataType");
  if (!buses) return;
  int counter = 0;
  UsbWriter writer(snapshot, counter);
  for (const auto& bus : buses->children()) {
    const Tag* entries = find_items(*bus);
    if (!entries) continue;
    for (const auto& entry : entries->children()) writer.add_entry(*entry);
  }
}

void collect_usb_device(InventoryTree& snapshot, const Tag& entry, int& counter) {
  UsbWriter(snapshot, counter).add_entry(entry);
}

Text parse_media_name(const char* diskutil_output) {
  constexpr char kLabel[] = "Device / Media Name:";
  const char* label = std::strstr(diskutil_output, kLabel);
  if (!label) return nullptr;
  const char* name = label + std::strlen(kLabel);
  const char* end = std::strstr(name, " Media\n");
  if (!end) return nullptr;
  while (name < end && *name == ' ') ++name;
  return copy_range(name, end);
}
