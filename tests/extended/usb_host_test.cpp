#include "extended/usb_host.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kHost[] = "SPUSBHostDataType";

std::string devices(const std::string& lines) {
  return in_snapshot("+Peripherals=\n+USB=\n" + lines + "-\n-\n");
}

Item bus(std::initializer_list<Item> items) { return holding("_items", items, {{"_name", "Bus"}}); }

TEST(UsbHost, DescribesADevice) {
  Mac mac;
  add_item(mac.additional, kHost,
           bus({{{"_name", "Portable SSD"},
                 {"USBDeviceKeyProductID", "0x61fb"},
                 {"USBDeviceKeyVendorID", "0x04e8"},
                 {"USBDeviceKeyProductVersion", "0x0100"},
                 {"USBDeviceKeyVendorName", "Maker"},
                 {"USBDeviceKeyLinkSpeed", "10 Gb/s"},
                 {"USBDeviceKeyPowerAllocation", "4.48 W (896 mA)"},
                 {"USBDeviceKeySerialNumber", "S1"},
                 {"USBKeyLocationID", "0x01200000"},
                 {"USBKeyHardwareType", "Removable"}}}));
  EXPECT_EQ(written(collect_usb_host, mac), devices("*Device:1=Portable SSD\n"
                                                    "product-id=0x61fb\n"
                                                    "vendor-id=0x04e8\n"
                                                    "bcd-device=0x0100\n"
                                                    "manuf=Maker\n"
                                                    "link-speed=10 Gb/s\n"
                                                    "power-allocation=4.48 W (896 mA)\n"
                                                    "location-id=0x01200000\n"
                                                    "hardware-type=Removable\n"
                                                    "serial-number=S1\n"));
}

TEST(UsbHost, SkipsASerialNumberThatIsNotProvided) {
  Mac mac;
  add_item(mac.additional, kHost,
           bus({{{"_name", "A"},
                 {"USBDeviceKeySerialNumber", "Not Provided"},
                 {"USBKeyHardwareType", "Built-in"}}}));
  EXPECT_EQ(written(collect_usb_host, mac), devices("*Device:1=A\nhardware-type=Built-in\n"));
}

TEST(UsbHost, ListsTheDevicesOnAHubInsteadOfTheHub) {
  Mac mac;
  add_item(mac.additional, kHost,
           bus({holding("_items",
                        {{{"_name", "A"}}, holding("_items", {{{"_name", "B"}}}, {{"_name", "Inner hub"}})},
                        {{"_name", "Hub"}}),
                {{"_name", "C"}}}));
  add_item(mac.additional, kHost, {{"_name", "Empty bus"}});
  add_item(mac.additional, kHost, bus({{{"_name", "D"}, {"USBKeyHardwareType", "Removable"}}}));
  EXPECT_EQ(written(collect_usb_host, mac),
            devices("*Device:1=A\n*Device:2=B\n*Device:3=C\n*Device:4=D\nhardware-type=Removable\n"));
}

TEST(UsbHost, ContinuesTheDevicesOfTheSnapshot) {
  Mac mac;
  add_item(mac.additional, kHost, bus({{{"_name", "B"}}}));
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/Peripherals/USB/Device:1/manuf", text_value("Maker"));
  collect_usb_host(snapshot, mac.inputs());
  EXPECT_EQ(tree_text(snapshot), devices("*Device:1=\nmanuf=Maker\n*Device:2=B\n"));
}

TEST(UsbHost, DoesNotRepeatADeviceAtAListedLocation) {
  Mac mac;
  add_item(mac.profiler, "SPUSBDataType",
           bus({holding("_items", {{{"_name", "A"}, {"location_id", "0x14700000 / 1"}}})}));
  add_item(mac.additional, kHost,
           bus({{{"_name", "A"}, {"USBKeyLocationID", "0x14700000"}},
                {{"_name", "B"}, {"USBKeyLocationID", "0x1470000"}}}));
  EXPECT_EQ(written(collect_usb_host, mac), devices("*Device:1=B\nlocation-id=0x1470000\n"));
}

TEST(UsbHost, WalksDeeplyNestedHubs) {
  Mac mac;
  std::string path = "_items/item0";
  for (int depth = 0; depth < 300; ++depth) path += "/_items/item0";
  add_item(mac.additional, kHost, {{path + "/_name", "Deep"}, {path + "/USBKeyHardwareType", "Removable"}});
  EXPECT_EQ(written(collect_usb_host, mac), devices("*Device:1=Deep\nhardware-type=Removable\n"));
}

}  // namespace
