#include "extended/thunderbolt.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kThunderbolt[] = "SPThunderboltDataType";

std::string elements(const std::string& lines) {
  return in_snapshot("+Peripherals=\n+Thunderbolt=\n" + lines + "-\n-\n");
}

TEST(Thunderbolt, HasBusesPortsAndDevices) {
  Mac mac;
  add_item(mac.additional, kThunderbolt,
           holding("_items",
                   {{{"_name", "dock"},
                     {"device_name_key", "Dock"},
                     {"vendor_name_key", "Maker"},
                     {"vendor_id_key", "0x3D"},
                     {"device_id_key", "0x1"},
                     {"mode_key", "usb_four"},
                     {"device_revision_key", "0x2"},
                     {"switch_version_key", "39.1"},
                     {"switch_uid_key", "0x01"},
                     {"route_string_key", "1"},
                     {"receptacle_upstream_ambiguous_tag/current_speed_key", "Up to 40 Gb/s"}}},
                   {{"_name", "thunderbolt_bus_0"},
                    {"device_name_key", "MacBook Pro"},
                    {"vendor_name_key", "Apple Inc."},
                    {"switch_uid_key", "0x05"},
                    {"receptacle_1_tag/receptacle_id_key", "1"},
                    {"receptacle_1_tag/receptacle_status_key", "receptacle_connected"},
                    {"receptacle_1_tag/current_speed_key", "40 Gb/s"},
                    {"receptacle_1_tag/link_status_key", "0x2"}}));
  EXPECT_EQ(written(collect_thunderbolt, mac), elements("+Bus:1=thunderbolt_bus_0\n"
                                                        "device-name=MacBook Pro\n"
                                                        "vendor=Apple Inc.\n"
                                                        "uid=0x05\n"
                                                        "*Port:1=\n"
                                                        "receptacle=1\n"
                                                        "status=receptacle_connected\n"
                                                        "speed=40 Gb/s\n"
                                                        "link-status=0x2\n"
                                                        "-\n"
                                                        "*Device:1=Dock\n"
                                                        "vendor=Maker\n"
                                                        "vendor-id=0x3D\n"
                                                        "device-id=0x1\n"
                                                        "mode=usb_four\n"
                                                        "revision=0x2\n"
                                                        "firmware=39.1\n"
                                                        "uid=0x01\n"
                                                        "route=1\n"
                                                        "speed=Up to 40 Gb/s\n"
                                                        "bus=1\n"
                                                        "depth=1\n"));
}

TEST(Thunderbolt, HasDevicesInAChain) {
  Mac mac;
  add_item(mac.additional, kThunderbolt, {{"device_name_key", "Mac"}});
  add_item(mac.additional, kThunderbolt,
           {{"device_name_key", "Mac"},
            {"_items/item0/device_name_key", "A"},
            {"_items/item0/_items/item0/device_name_key", "B"},
            {"_items/item1/device_name_key", "C"}});
  EXPECT_EQ(written(collect_thunderbolt, mac), elements("*Bus:1=\ndevice-name=Mac\n*Bus:2=\ndevice-name=Mac\n"
                                                        "*Device:1=A\nbus=2\ndepth=1\n"
                                                        "*Device:2=B\nbus=2\ndepth=2\n"
                                                        "*Device:3=C\nbus=2\ndepth=1\n"));
}

TEST(Thunderbolt, OrdersReceptaclesByName) {
  Mac mac;
  add_item(mac.additional, kThunderbolt,
           {{"device_name_key", "Mac"},
            {"receptacle_2_tag/receptacle_id_key", "2"},
            {"receptacle_1_tag/receptacle_id_key", "1"},
            {"_items/item0/device_name_key", "Dock"},
            {"_items/item0/receptacle_upstream_ambiguous_tag/current_speed_key", "40 Gb/s"},
            {"_items/item0/receptacle_1_tag/current_speed_key", "20 Gb/s"}});
  EXPECT_EQ(written(collect_thunderbolt, mac),
            elements("+Bus:1=\ndevice-name=Mac\n*Port:1=\nreceptacle=1\n*Port:2=\nreceptacle=2\n-\n"
                     "*Device:1=Dock\nspeed=40 Gb/s\nbus=1\ndepth=1\n"));
}

TEST(Thunderbolt, IsEmptyWithoutHardware) {
  Mac mac;
  EXPECT_EQ(written(collect_thunderbolt, mac), kEmptySnapshot);
  add_item(mac.additional, kThunderbolt, {{"_name", "no_hardware"}});
  add_item(mac.additional, kThunderbolt, {{"_name", "odd"}, {"device_name_key", 5}});
  EXPECT_EQ(written(collect_thunderbolt, mac), kEmptySnapshot);
}

}  // namespace
