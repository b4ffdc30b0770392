#include "extended/volumes.h"

#include <string>
#include <unordered_set>

#include "collectors/free_numbers.h"
#include "collectors/storage.h"
#include "collectors/volumes.h"
#include "extended/storage_volumes.h"

namespace {

constexpr CopiedField kPlaceFields[] = {
    {"file_system", "file-sys"}, {"bsd_name", "bsd-name"}, {"mount_point", "mount-point"}};

// The partitions that the snapshot has, by what identifies them.
class ListedVolumes {
 public:
  ListedVolumes(const InventoryTree& snapshot, const InventoryTree& profiler) {
    if (const Tag* partitions = find_element(snapshot, {"Storage", "Logical-disks"})) {
      for (const auto& partition : partitions->children()) add(*partition);
    }
    for (const Tag* disk : hard_disks(profiler)) {
      for (const Tag* volume : named_volumes(*disk)) insert(bsd_names_, find_text(*volume, "bsd_name"));
    }
  }

  bool have(const Tag& volume) const {
    return contains(bsd_names_, find_text(volume, "bsd_name")) ||
           contains(places_, place(find_text(volume, "_name"), find_text(volume, "mount_point")).get());
  }

 private:
  void add(const Tag& partition) {
    insert(bsd_names_, find_text(partition, "bsd-name"));
    const char* name = partition.value() ? partition.value()->text() : nullptr;
    insert(places_, place(name, find_text(partition, "mount-point")).get());
  }

  // Null where either is missing. No text of a tree has a line end.
  static Text place(const char* name, const char* mount_point) {
    return name && mount_point ? format_string("%s\n%s", name, mount_point) : nullptr;
  }

  static void insert(std::unordered_set<std::string>& names, const char* name) {
    if (name) names.insert(name);
  }
  static bool contains(const std::unordered_set<std::string>& names, const char* name) {
    return name && names.count(name) > 0;
  }

  std::unordered_set<std::string> bsd_names_;
  std::unordered_set<std::string> places_;
};

// As in the default scan of a system that gives a volume's space in bytes only.
bool write_space(Place& partition, const char* name, const Tag& volume, const SpaceKeys& keys,
                 double& space) {
  if (!has_space(volume, keys)) return false;
  space = space_in_gb(volume, keys, false);
  partition.set_attribute(name, Value(space), "base-value", space_base_value(volume, keys).get());
  return true;
}

void write_volume(Place& partition, const Tag& volume) {
  copy_element_value(partition, volume, "_name");
  copy_fields(partition, volume, kPlaceFields);
  VolumeSpace space;
  const bool has_size = write_space(partition, "size", volume, kSizeKeys, space.size);
  space.has_free = write_space(partition, "free", volume, kFreeKeys, space.free);
  if (has_size && space.has_free) write_used_share(partition, space);
  if (const char* mount_point = find_text(volume, "mount_point"))
    set_yes_or_no(partition, "system-volume", equal_text(mount_point, "/"));
  write_volume_facts(partition, volume);
}

}  // namespace

void collect_volumes(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const ListedVolumes listed(snapshot, inputs.profiler);
  FreeNumbers numbers(snapshot, {"Storage", "Logical-disks"}, "partition:");
  Place partitions(snapshot.root(), "/Storage/Logical-disks");
  for (const Tag* volume : storage_volumes(inputs.additional)) {
    if (listed.have(*volume)) continue;
    Place partition(partitions, numbers.next_name(), Place::Names::unused);
    write_volume(partition, *volume);
  }
}
