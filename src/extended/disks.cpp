#include "extended/disks.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "collectors/free_numbers.h"
#include "collectors/storage.h"
#include "collectors/volumes.h"
#include "extended/nested_items.h"
#include "extended/storage_volumes.h"

namespace {

// As in the default scan: a number for an internal disk, a text for an external one.
constexpr int64_t kHardDiskMedia = 3;
constexpr char kRemovableMedia[] = "2";

constexpr CopiedField kNvmeModel[] = {{"device_model", "model"}};
constexpr CopiedField kNvmeIdentity[] = {{"device_serial", "serial"}, {"device_revision", "fw-rev"}};
constexpr CopiedField kNvmeFields[] = {
    {"smart_status", "smart-status"},        {"bsd_name", "bsd-name"},
    {"partition_map_type", "partition-map"}, {"spnvme_linkspeed", "link-speed"},
    {"spnvme_linkwidth", "link-width"},
};
constexpr CopiedField kNvmeSwitches[] = {{"spnvme_trim_support", "trim-support"}};

constexpr CopiedField kUsbFields[] = {
    {"_name", "model"},           {"serial_num", "serial"},       {"manufacturer", "manufacturer"},
    {"bcd_device", "bcd-device"}, {"device_speed", "link-speed"},
};
constexpr CopiedField kMediumFields[] = {
    {"smart_status", "smart-status"}, {"bsd_name", "bsd-name"}, {"partition_map_type", "partition-map"}};

void write_size_if_known(Place& disk, const Tag& device) {
  if (has_space(device, kSizeKeys)) write_disk_size(disk, device);
}

// The disks seen so far, by model and by BSD name.
class KnownDisks {
 public:
  void add(const Tag& device, const char* model_key) {
    insert(models_, find_text(device, model_key));
    insert(bsd_names_, find_text(device, "bsd_name"));
  }

  bool have(const char* model, const std::string& bsd_name) const {
    return (model && models_.count(model) > 0) || bsd_names_.count(bsd_name) > 0;
  }

 private:
  static void insert(std::unordered_set<std::string>& names, const char* name) {
    if (name) names.insert(name);
  }

  std::unordered_set<std::string> models_;
  std::unordered_set<std::string> bsd_names_;
};

// A disk that is known only from its volumes.
struct UnlistedDisk {
  const Tag* drive;
  int64_t volumes;
};

class DiskWriter {
 public:
  DiskWriter(InventoryTree& snapshot, const ExtendedInputs& inputs)
      : disks_(snapshot.root(), "/Storage/Physical-disks"),
        hard_disk_numbers_(snapshot, {"Storage", "Physical-disks"}, "HDD:"),
        removable_numbers_(snapshot, {"Storage", "Physical-disks"}, "Removable:"),
        inputs_(inputs),
        volumes_(storage_volumes(inputs.additional)),
        drives_(drives_by_model(volumes_)) {
    for (const Tag* disk : hard_disks(inputs.profiler)) known_.add(*disk, "device_model");
  }

  void add_nvme_disks() {
    const Tag* controllers = find_items(inputs_.additional, "SPNVMeDataType");
    if (!controllers) return;
    for (const auto& controller : controllers->children()) {
      const Tag* devices = find_items(*controller);
      if (!devices) continue;
      for (const auto& device : devices->children()) add_nvme_disk(*device);
    }
  }

  void add_usb_disks() {
    visit_nested(find_items(inputs_.profiler, "SPUSBDataType"), [this](const Tag& entry, int) {
      // Such an entry is itself a disk, which the default scan has.
      if (text_is(entry, "removable_media", "yes")) {
        known_.add(entry, "_name");
        return false;
      }
      if (const Tag* media = find_list(entry, "Media")) {
        for (const auto& medium : media->children()) add_usb_disk(entry, *medium);
      }
      return true;
    });
  }

  void add_unlisted_disks() {
    std::vector<UnlistedDisk> disks;
    std::unordered_map<std::string, size_t> positions;
    for (const Tag* volume : volumes_) {
      for (const Tag* drive : drives_of(*volume)) {
        const std::string bsd_name = bsd_disk(*volume);
        const char* model = drive_model(*drive);
        if (known_.have(model, bsd_name)) continue;
        const auto [position, is_new] = positions.emplace(model ? model : bsd_name, disks.size());
        if (is_new) disks.push_back({drive, 0});
        ++disks[position->second].volumes;
      }
    }
    for (const UnlistedDisk& disk : disks) add_unlisted_disk(disk);
  }

 private:
  // Empty where the volume has no BSD name.
  static std::string bsd_disk(const Tag& volume) {
    const char* bsd_name = find_text(volume, "bsd_name");
    return bsd_name ? whole_disk(bsd_name) : std::string();
  }

  Place next_hard_disk(const char* interface) {
    Place disk(disks_, hard_disk_numbers_.next_name(), Place::Names::unused);
    set_text(disk, "interface", interface);
    disk.set_attribute("mediatype", Value(kHardDiskMedia), "type", "media-type");
    return disk;
  }

  Place next_removable(const char* interface) {
    Place disk(disks_, removable_numbers_.next_name(), Place::Names::unused);
    disk.set_attribute("media-type", text_value(kRemovableMedia));
    set_text(disk, "interface", interface);
    return disk;
  }

  static void write_partitions(Place& disk, const Tag& device) {
    disk.set_attribute("partitions", Value(static_cast<int64_t>(named_volumes(device).size())));
  }

  void add_nvme_disk(const Tag& device) {
    known_.add(device, "device_model");
    Place disk = next_hard_disk("NVMe");
    copy_fields(disk, device, kNvmeModel);
    write_size_if_known(disk, device);
    copy_fields(disk, device, kNvmeIdentity);
    write_partitions(disk, device);
    if (const Tag* drive = find_tag(drives_, find_text(device, "device_model")))
      write_drive_facts(disk, *drive);
    copy_fields(disk, device, kNvmeFields);
    copy_switches(disk, device, kNvmeSwitches);
    set_text(disk, "source", "SPNVMeDataType");
  }

  void add_usb_disk(const Tag& entry, const Tag& medium) {
    known_.add(entry, "_name");
    known_.add(medium, "_name");
    Place disk = next_removable("USB");
    copy_element_value(disk, medium, "_name");
    copy_fields(disk, entry, kUsbFields);
    write_size_if_known(disk, medium);
    write_partitions(disk, medium);
    copy_fields(disk, medium, kMediumFields);
    set_text(disk, "source", "SPUSBDataType");
  }

  void add_unlisted_disk(const UnlistedDisk& unlisted) {
    const Tag& drive = *unlisted.drive;
    const char* interface = find_text(drive, "protocol");
    const bool is_external = parse_yes_or_no(find_text(drive, "is_internal_disk")) == false;
    Place disk = is_external ? next_removable(interface) : next_hard_disk(interface);
    set_text(disk, "model", drive_model(drive));
    disk.set_attribute("partitions", Value(unlisted.volumes));
    write_drive_facts(disk, drive);
    set_text(disk, "source", "SPStorageDataType");
  }

  Place disks_;
  FreeNumbers hard_disk_numbers_;
  FreeNumbers removable_numbers_;
  const ExtendedInputs& inputs_;
  std::vector<const Tag*> volumes_;
  TagIndex drives_;
  KnownDisks known_;
};

}  // namespace

void collect_disks(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  DiskWriter writer(snapshot, inputs);
  writer.add_nvme_disks();
  writer.add_usb_disks();
  writer.add_unlisted_disks();
}
