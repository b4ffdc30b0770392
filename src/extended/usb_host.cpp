#include "extended/usb_host.h"

#include <string>
#include <unordered_set>

#include "collectors/free_numbers.h"
#include "extended/facts.h"
#include "extended/nested_items.h"
#include "profiler/units.h"

namespace {

constexpr char kSerialNumber[] = "USBDeviceKeySerialNumber";

constexpr CopiedField kDeviceFields[] = {
    {"USBDeviceKeyProductID", "product-id"},      {"USBDeviceKeyVendorID", "vendor-id"},
    {"USBDeviceKeyProductVersion", "bcd-device"}, {"USBDeviceKeyVendorName", "manuf"},
    {"USBDeviceKeyLinkSpeed", "link-speed"},      {"USBDeviceKeyPowerAllocation", "power-allocation"},
    {"USBKeyLocationID", "location-id"},          {"USBKeyHardwareType", "hardware-type"},
};

// "0x14700000" of "0x14700000 / 1"; the second number is the address on the bus.
std::unordered_set<std::string> listed_locations(const InventoryTree& profiler) {
  std::unordered_set<std::string> locations;
  visit_nested(find_items(profiler, "SPUSBDataType"), [&](const Tag& entry, int) {
    if (const char* location = find_text(entry, "location_id")) locations.insert(copy_word(location).get());
    return true;
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
    visit_nested(find_items(*bus), [&](const Tag& item, int) {
      if (find_items(item)) return true;
      const char* location = find_text(item, "USBKeyLocationID");
      if (location && locations.count(location) > 0) return false;
      Place device(devices, numbers.next_name(), Place::Names::unused);
      write_device(device, item);
      return false;
    });
  }
}
