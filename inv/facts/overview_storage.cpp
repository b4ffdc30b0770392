#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "inv/facts/overview_parts.h"

namespace inv {
namespace {

// A size in bytes: exact if the file has them, else converted from decimal gigabytes.
uint64_t bytes_of(Element element, std::string_view name) {
  const Attribute* size = element.attribute(name);
  if (!size) return 0;
  if (const std::optional<uint64_t> exact = parse_decimal(size->annotation("base-value"))) return *exact;
  const double gigabytes = std::strtod(std::string(size->value).c_str(), nullptr);
  constexpr double kMost = 1e9;  // an exabyte; a file that says more is not believed
  return gigabytes > 0 && gigabytes < kMost ? static_cast<uint64_t>(gigabytes * 1e9) : 0;
}

// What an extended scan adds to disks and volumes: their own attributes, else those in /Storage/Details.
class Details {
 public:
  explicit Details(Element storage) {
    for (const Element element : storage.child("Details").children())
      by_name_.emplace(element.name(), element);
  }

  std::string text(Element element, std::string_view name) const {
    if (const Attribute* own = element.attribute(name)) return std::string(own->value);
    const auto found = by_name_.find(element.name());
    return found == by_name_.end() ? "" : std::string(found->second.text(name));
  }

 private:
  std::unordered_map<std::string_view, Element> by_name_;
};

std::string smart_problem(const std::string& status) {
  return status == "Verified" || status == "Not Supported" ? "" : status;
}

Disk disk_of(Element element, const Details& details) {
  Disk disk;
  const std::string_view model = element.text("model");
  disk.kind = element.name().substr(0, element.name().find(':'));
  disk.model = model.empty() ? element.value() : model;
  disk.serial = text(element, "serial");
  disk.interface = text(element, "interface");
  disk.bytes = bytes_of(element, "size");
  disk.medium = readable_word(details.text(element, "medium"));
  disk.problem = smart_problem(details.text(element, "smart-status"));
  return disk;
}

Volume volume_of(Element element) {
  Volume volume;
  volume.name = element.value();
  volume.file_system = text(element, "file-sys");
  volume.mount_point = text(element, "mount-point");
  volume.bytes = bytes_of(element, "size");
  volume.free_bytes = bytes_of(element, "free");
  volume.knows_free = element.attribute("free") != nullptr;
  volume.container = text(element, "container");
  return volume;
}

// Moves the volumes of a container next to its first one.
std::vector<Volume> grouped(std::vector<Volume> volumes) {
  std::vector<std::vector<Volume>> groups;
  std::unordered_map<std::string, size_t> containers;
  for (Volume& volume : volumes) {
    const bool alone = volume.container.empty();
    const size_t group =
        alone ? groups.size() : containers.emplace(volume.container, groups.size()).first->second;
    if (group == groups.size()) groups.emplace_back();
    groups[group].push_back(std::move(volume));
  }
  std::vector<Volume> ordered;
  for (std::vector<Volume>& group : groups)
    std::move(group.begin(), group.end(), std::back_inserter(ordered));
  return ordered;
}

std::vector<Volume> volumes_of(Element storage, const Details& details) {
  const Children elements = storage.child("Logical-disks").children();
  bool knows_containers = false;
  for (const Element element : elements) {
    if (element.attribute("container")) knows_containers = true;
  }
  std::vector<Volume> volumes;
  for (const Element element : elements) {
    // A partition that is a container is listed as the volumes that share it.
    const bool holds_container = details.text(element, "content") == "Apple_APFS";
    if (!(knows_containers && holds_container)) volumes.push_back(volume_of(element));
  }
  return grouped(std::move(volumes));
}

}  // namespace

void read_storage(Element top, Overview& overview) {
  const Element storage = top.child("Storage");
  const Details details(storage);
  for (const Element disk : storage.child("Physical-disks").children()) {
    overview.disks.push_back(disk_of(disk, details));
  }
  overview.volumes = volumes_of(storage, details);
}

unsigned Volume::used_percent() const {
  if (bytes == 0 || free_bytes >= bytes) return 0;
  const double used = static_cast<double>(bytes - free_bytes) / static_cast<double>(bytes);
  return static_cast<unsigned>(used * 100);
}

std::vector<std::vector<Volume>> by_space(const std::vector<Volume>& volumes) {
  std::vector<std::vector<Volume>> spaces;
  for (const Volume& volume : volumes) {
    if (spaces.empty() || !volume.shares_space_with(spaces.back().front())) spaces.emplace_back();
    spaces.back().push_back(volume);
  }
  return spaces;
}

Space space_of(const std::vector<Volume>& volumes) {
  Space space;
  std::unordered_set<std::string> counted;
  for (const Volume& volume : volumes) {
    if (!volume.knows_used()) continue;
    if (!volume.container.empty() && !counted.insert(volume.container).second) continue;
    space.bytes += volume.bytes;
    space.free_bytes += volume.free_bytes;
  }
  return space;
}

}  // namespace inv
