#include "extended/usb_host.h"

#include <string>
#include <unordered_set>

#include "collectors/free_numbers.h"
#include "extended/facts.h"
#include "profiler/units.h"

namespace {

constexpr char kSerialNumber[] = "USBDeviceKeySerialNumber";

constexpr CopiedField kDeviceFields[] = {
    {"USBDeviceKeyProductID", "product-id"},      {"USBDeviceKeyVendorID", "vendor-id"},
    {"USBDeviceKeyProductVersion", "bcd-device"}, {"USBDeviceKeyVendorName", "manuf"},
    {"USBDeviceKeyLinkSpeed", "link-speed"},      {"USBDeviceKeyPowerAllocation", "power-allocation"},
    {"USBKeyLocationID", "location-id"},          {"USBKeyHardwareType", "hardware-type"},
};

// Calls `visit` for everything on the buses. Hubs stand in hubs as deep as the machine says, so the items
// still to come are kept in a list, the next one last.
template <typename Visit>
void visit_items(const Tag* items, const Visit& visit) {
  std::vector<const Tag*> pending;
  const auto push = [&pending](const Tag* list) {
    if (!list) return;
    for (auto item = list->children().rbegin(); item != list->children().rend(); ++item)
      pending.push_back(item->get());
  };
  push(items);
  while (!pending.empty()) {
    const Tag& item = *pending.back();
    pending.pop_back();
    const Tag* below = find_items(item);
    visit(item, below != nullptr);
    push(below);
  }
}

// "0x14700000" of "0x14700000 / 1", which tells the address on the bus too.
std::unordered_set<std::string> listed_locations(const InventoryTree& profiler) {
  std::unordered_set<std::string> locations;
  visit_items(find_items(profiler, "SPUSBDataType"), [&](const Tag& entry, bool) {
    if (const char* location = find_text(entry, "location_id")) locations.insert(copy_word(location).get());
  });
  return locations;
}

void write_device(Place& device, const Tag& item) {
  copy_element_value(device, item, "_name");
  copy_fields(device, item, kDeviceFields);
  if (!text_is(item, kSerialNumber, "Not Provided")) copy_field(device, "serial-number", item, kSerialNumber);
}

}  // namespace

void collect_usb_host(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* buses = find_items(inputs.additional, "SPUSBHostDataType");
  if (!buses) return;
  const std::unordered_set<std::string> locations = listed_locations(inputs.profiler);
  FreeNumbers numbers(snapshot, {"Peripherals", "USB"}, "Device:");
  Place devices(snapshot.root(), "/Peripherals/USB");
  for (const auto& bus : buses->children()) {
    visit_items(find_items(*bus), [&](const Tag& item, bool is_hub) {
      const char* location = find_text(item, "USBKeyLocationID");
      if (is_hub || (location && locations.count(location) > 0)) return;
      Place device(devices, numbers.next_name(), Place::Names::unused);
      write_device(device, item);
    });
  }
}
