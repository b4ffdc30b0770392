#include "extended/thunderbolt.h"

#include <algorithm>
#include <string>

#include "extended/facts.h"
#include "extended/nested_items.h"

namespace {

constexpr char kDeviceName[] = "device_name_key";

constexpr CopiedField kBusFields[] = {
    {kDeviceName, "device-name"},
    {"vendor_name_key", "vendor"},
    {"switch_uid_key", "uid"},
};
constexpr CopiedField kPortFields[] = {
    {"receptacle_id_key", "receptacle"},
    {"receptacle_status_key", "status"},
    {"current_speed_key", "speed"},
    {"link_status_key", "link-status"},
};
constexpr CopiedField kDeviceFields[] = {
    {"vendor_name_key", "vendor"}, {"vendor_id_key", "vendor-id"},      {"device_id_key", "device-id"},
    {"mode_key", "mode"},          {"device_revision_key", "revision"}, {"switch_version_key", "firmware"},
    {"switch_uid_key", "uid"},     {"route_string_key", "route"},
};

// "receptacle_1_tag" and so on; last the one facing the Mac, "receptacle_upstream_ambiguous_tag". Sorted,
// since a dictionary has no order.
std::vector<const Tag*> receptacles_of(const Tag& item) {
  constexpr char kStart[] = "receptacle_";
  std::vector<const Tag*> receptacles;
  for (const auto& child : item.children()) {
    if (child->name().rfind(kStart, 0) == 0) receptacles.push_back(child.get());
  }
  std::sort(receptacles.begin(), receptacles.end(),
            [](const Tag* left, const Tag* right) { return left->name() < right->name(); });
  return receptacles;
}

class ThunderboltWriter {
 public:
  explicit ThunderboltWriter(InventoryTree& snapshot)
      : elements_(snapshot.root(), "/Peripherals/Thunderbolt") {}

  void add_bus(const Tag& item) {
    if (!find_text(item, kDeviceName)) return;
    Place bus = next_element("Bus:", ++bus_count_);
    copy_element_value(bus, item, "_name");
    copy_fields(bus, item, kBusFields);
    int number = 0;
    for (const Tag* receptacle : receptacles_of(item)) {
      Place port(bus, "Port:" + std::to_string(++number), Place::Names::distinct);
      copy_fields(port, *receptacle, kPortFields);
    }
    visit_nested(find_items(item), [this](const Tag& below, int depth) {
      if (find_text(below, kDeviceName)) add_device(below, depth);
      return true;
    });
  }

 private:
  void add_device(const Tag& item, int depth) {
    Place device = next_element("Device:", ++device_count_);
    copy_element_value(device, item, kDeviceName);
    copy_fields(device, item, kDeviceFields);
    const std::vector<const Tag*> receptacles = receptacles_of(item);
    if (!receptacles.empty()) copy_field(device, "speed", *receptacles.back(), "current_speed_key");
    device.set_attribute("bus", Value(int64_t{bus_count_}));
    device.set_attribute("depth", Value(int64_t{depth}));
  }

  Place next_element(const char* prefix, int number) {
    return Place(elements_, prefix + std::to_string(number), Place::Names::distinct);
  }

  Place elements_;
  int bus_count_ = 0;
  int device_count_ = 0;
};

}  // namespace

void collect_thunderbolt(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* buses = find_items(inputs.additional, "SPThunderboltDataType");
  if (!buses) return;
  ThunderboltWriter writer(snapshot);
  for (const auto& bus : buses->children()) writer.add_bus(*bus);
}
