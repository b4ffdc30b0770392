#include "extended/bluetooth.h"

#include <string>

#include "extended/facts.h"

namespace {

// The keys of a fact are listed from the oldest system to the newest.
constexpr CopiedField kControllerFields[] = {
    {"general_name", "name"},
    {"general_address", "address"},
    {"controller_address", "address"},
    {"general_mfg", "manuf"},
    {"general_chipset", "chipset"},
    {"controller_chipset", "chipset"},
    {"general_fw_version", "firmware"},
    {"general_firmware_version", "firmware"},
    {"controller_firmwareVersion", "firmware"},
    {"general_vendorID", "vendor-id"},
    {"controller_vendorID", "vendor-id"},
    {"general_productID", "product-id"},
    {"controller_productID", "product-id"},
    {"general_hci_transport", "transport"},
    {"controller_transport", "transport"},
};
constexpr CopiedField kControllerSwitches[] = {
    {"general_power", "powered"},
    {"controller_state", "powered"},
    {"general_discoverable", "discoverable"},
    {"controller_discoverable", "discoverable"},
};
constexpr CopiedField kDeviceFields[] = {
    {"device_addr", "address"},
    {"device_address", "address"},
    {"device_minorClassOfDevice_string", "minor-type"},
    {"device_minorType", "minor-type"},
    {"device_fw_version", "firmware"},
    {"device_firmware_version", "firmware"},
    {"device_firmwareVersion", "firmware"},
    {"device_vendorID", "vendor-id"},
    {"device_productID", "product-id"},
    {"device_manufacturer", "manuf"},
    {"device_serialNumber", "serial"},
};
constexpr CopiedField kDeviceSwitches[] = {{"device_isconnected", "connected"}};

struct DeviceList {
  const char* key;
  std::optional<bool> connected;  // empty where each device says so itself
};

const DeviceList kDeviceLists[] = {
    {"device_title", std::nullopt},
    {"device_connected", true},
    {"device_not_connected", false},
};

// Named dictionaries: the entries of one dictionary, or of a list of dictionaries.
std::vector<const Tag*> named_dictionaries(const Tag& item, const char* key) {
  std::vector<const Tag*> dictionaries;
  const Tag* container = item.find_child(key);
  if (!container) return dictionaries;
  const bool is_list = find_list(item, key) != nullptr;
  for (const auto& child : container->children()) {
    if (!is_list) dictionaries.push_back(child.get());
    for (const auto& named : child->children())
      if (is_list) dictionaries.push_back(named.get());
  }
  return dictionaries;
}

const char* original_key(const Tag& tag) {
  for (const Annotation& annotation : tag.annotations()) {
    if (annotation.key == "key") return annotation.text.c_str();
  }
  return tag.name().c_str();
}

// Mac OS X 10.4 puts the controller's facts under its name.
const Tag* find_controller(const Tag& item) {
  constexpr char kTitle[] = "local_device_title";
  if (const Tag* properties = item.find_child("controller_properties")) return properties;
  if (!find_list(item, kTitle)) return item.find_child(kTitle);
  const std::vector<const Tag*> named = named_dictionaries(item, kTitle);
  return named.empty() ? nullptr : named.front();
}

class BluetoothWriter {
 public:
  explicit BluetoothWriter(InventoryTree& snapshot) : bluetooth_(snapshot.root(), "/Peripherals/Bluetooth") {}

  void add_controller(const Tag& item) {
    copy_field(bluetooth_, "software-version", item, "apple_bluetooth_version");
    const Tag* controller = find_controller(item);
    if (!controller) return;
    copy_fields(bluetooth_, *controller, kControllerFields);
    copy_switches(bluetooth_, *controller, kControllerSwitches);
  }

  void add_devices(const Tag& item, const DeviceList& list) {
    for (const Tag* tag : named_dictionaries(item, list.key)) {
      Place device(bluetooth_, "Device:" + std::to_string(++device_count_), Place::Names::distinct);
      device.set_value(text_value(original_key(*tag)));
      set_yes_or_no(device, "connected", list.connected);
      copy_fields(device, *tag, kDeviceFields);
      copy_switches(device, *tag, kDeviceSwitches);
    }
  }

 private:
  Place bluetooth_;
  int device_count_ = 0;
};

}  // namespace

void collect_bluetooth(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* items = find_items(inputs.profiler, "SPBluetoothDataType");
  if (!items) return;
  BluetoothWriter writer(snapshot);
  for (const auto& item : items->children()) {
    writer.add_controller(*item);
    if (!inputs.with_people) continue;
    for (const DeviceList& list : kDeviceLists) writer.add_devices(*item, list);
  }
}
