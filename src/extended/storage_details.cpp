#include "extended/storage_details.h"

#include <string>

#include "collectors/free_numbers.h"
#include "collectors/storage.h"
#include "extended/storage_volumes.h"

namespace {

constexpr CopiedField kDiskFields[] = {
    {"bsd_name", "bsd-name"},
    {"smart_status", "smart-status"},
    {"spsata_medium_type", "medium"},
    {"spsata_rotational_rate", "rotational-rate"},
    {"partition_map_type", "partition-map"},
};
constexpr CopiedField kDiskSwitches[] = {{"spsata_trim_support", "trim-support"}};
constexpr CopiedField kVolumeFields[] = {
    {"bsd_name", "bsd-name"}, {"iocontent", "content"}, {"volume_uuid", "uuid"}};
constexpr CopiedField kVolumeSwitches[] = {{"writable", "writable"}};

class DetailWriter {
 public:
  DetailWriter(InventoryTree& snapshot, const std::vector<const Tag*>& volumes)
      : details_(snapshot.root(), "/Storage/Details"), drives_(drives_by_model(volumes)) {
    for (const Tag* volume : volumes) {
      if (const char* bsd_name = find_text(*volume, "bsd_name")) volumes_.emplace(bsd_name, volume);
    }
  }

  void add_disk(const Tag& device) {
    Place disk = next_element("HDD:", ++disk_count_);
    if (const Tag* drive = find_tag(drives_, find_text(device, "device_model")))
      write_drive_facts(disk, *drive);
    copy_fields(disk, device, kDiskFields);
    copy_switches(disk, device, kDiskSwitches);
    for (const Tag* volume : named_volumes(device)) add_partition(*volume);
  }

  // The partitions that follow those of the hard disks; the snapshot has their BSD names.
  void add_other_partitions(const Tag& partitions) {
    const auto first = static_cast<size_t>(partition_count_);
    for (size_t i = first; i < partitions.children().size(); ++i) {
      Place partition = next_element("partition:", ++partition_count_);
      write_storage_facts(partition, find_text(*partitions.child_at(i), "bsd-name"));
    }
  }

 private:
  Place next_element(const char* prefix, int number) {
    return Place(details_, prefix + std::to_string(number), Place::Names::distinct);
  }

  void add_partition(const Tag& volume) {
    Place partition = next_element("partition:", ++partition_count_);
    write_storage_facts(partition, find_text(volume, "bsd_name"));
    copy_fields(partition, volume, kVolumeFields);
    copy_switches(partition, volume, kVolumeSwitches);
  }

  void write_storage_facts(Place& partition, const char* bsd_name) {
    if (const Tag* volume = find_tag(volumes_, bsd_name)) write_volume_facts(partition, *volume);
  }

  Place details_;
  TagIndex drives_;
  TagIndex volumes_;  // by BSD name
  int disk_count_ = 0;
  int partition_count_ = 0;
};

}  // namespace

void collect_storage_details(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  DetailWriter writer(snapshot, storage_volumes(inputs.additional));
  for (const Tag* disk : hard_disks(inputs.profiler)) writer.add_disk(*disk);
  if (const Tag* partitions = find_element(snapshot, {"Storage", "Logical-disks"}))
    writer.add_other_partitions(*partitions);
}
