#include "collectors/storage.h"

#include "collectors/volumes.h"
namespace {

constexpr int64_t kHardDiskMedia = 3;

Place add_element(Place& list, const char* prefix, int& count) {
  return Place(list, format_string("%s%d", prefix, ++count).get(), Place::Names::distinct);
}

// The lists that all disks and drives share, and the last number given to each kind.
class StorageLists {
 public:
  explicit StorageLists(InventoryTree& snapshot)
      : disks_(snapshot.root(), "/Storage/Physical-disks"),
        partitions_(snapshot.root(), "/Storage/Logical-disks") {}

  void add_optical_drive(const Tag& device) {
    Place drive = add_element(disks_, "CD:", drive_count_);
    copy_field(drive, "model", device, "device_model");
  }

  void add_hard_disk(const Tag& device, const char* interface) {
    Place disk = add_element(disks_, "HDD:", hard_disk_count_);
    copy_field(disk, "model", device, "device_model");
    disk.set_attribute("interface", text_value(interface));
    disk.set_attribute("mediatype", Value(kHardDiskMedia), "type", "media-type");
    write_disk_size(disk, device);
    copy_field(disk, "serial", device, "device_serial");
    copy_field(disk, "fw-rev", device, "device_revision");
    const std::vector<const Tag*> volumes = named_volumes(device);
    for (const Tag* volume : volumes) add_partition(*volume);
    disk.set_attribute("partitions", Value(static_cast<int64_t>(volumes.size())));
  }

 private:
  void add_partition(const Tag& volume) {
    Place partition = add_element(partitions_, "partition:", partition_count_);
    copy_element_value(partition, volume, "_name");
    if (text_is(volume, "iocontent", "Apple_CoreStorage")) partition.annotate("kind", "encrypted");
    copy_field(partition, "file-sys", volume, "file_system");
    const VolumeSpace space = write_volume_space(partition, volume);
    copy_field(partition, "mount-point", volume, "mount_point");
    if (space.has_free) write_used_share(partition, space);
  }

  Place disks_;
  Place partitions_;
  int hard_disk_count_ = 0;
  int drive_count_ = 0;
  int partition_count_ = 0;
};

// Calls `visit` for every device: `levels` is the number of lists nested in each other, the last of which
// holds the devices.
template <typename Visit>
void visit_devices(const Tag* items, int levels, const Visit& visit) {
  if (!items) return;
  for (const auto& item : items->children()) {
    if (levels > 1)
      visit_devices(find_items(*item), levels - 1, visit);
    else
      visit(*item);
  }
}

// Optical drives are recognised by their lack of SMART.
bool has_smart_status(const Tag& device) {
  const char* status = find_text(device, "smart_status");
  return status && !equal_text(status, "Not Supported");
}

}  // namespace

void collect_storage(InventoryTree& snapshot, InventoryTree& profiler) {
  StorageLists storage(snapshot);
  visit_devices(find_items(profiler, "SPSerialATADataType"), 2, [&](const Tag& device) {
    if (has_smart_status(device))
      storage.add_hard_disk(device, "SATA");
    else
      storage.add_optical_drive(device);
  });
  visit_devices(find_items(profiler, "SPParallelSCSIDataType"), 3,
                [&](const Tag& device) { storage.add_hard_disk(device, "SCSI"); });
  visit_devices(find_items(profiler, "SPParallelATADataType"), 2,
                [&](const Tag& device) { storage.add_optical_drive(device); });
}

std::vector<const Tag*> hard_disks(const InventoryTree& profiler) {
  std::vector<const Tag*> disks;
  visit_devices(find_items(profiler, "SPSerialATADataType"), 2, [&](const Tag& device) {
    if (has_smart_status(device)) disks.push_back(&device);
  });
  visit_devices(find_items(profiler, "SPParallelSCSIDataType"), 3,
                [&](const Tag& device) { disks.push_back(&device); });
  return disks;
}

std::vector<const Tag*> named_volumes(const Tag& disk) {
  std::vector<const Tag*> named;
  const Tag* volumes = find_list(disk, "volumes");
  if (!volumes) return named;
  for (const auto& volume : volumes->children()) {
    if (find_value(*volume, "_name")) named.push_back(volume.get());
  }
  return named;
}
