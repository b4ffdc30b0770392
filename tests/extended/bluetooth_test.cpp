#include "extended/bluetooth.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kBluetooth[] = "SPBluetoothDataType";

std::string bluetooth(const std::string& lines) { return in_snapshot("+Peripherals=\n" + lines + "-\n"); }

TEST(Bluetooth, HasTheControllerAndDevicesOfCurrentSystems) {
  Mac mac;
  add_item(mac.profiler, kBluetooth,
           {{"controller_properties/controller_address", "00:00:5E:00:53:01"},
            {"controller_properties/controller_chipset", "BCM_4387"},
            {"controller_properties/controller_firmwareVersion", "21.1"},
            {"controller_properties/controller_vendorID", "0x004C"},
            {"controller_properties/controller_productID", "0x4A12"},
            {"controller_properties/controller_transport", "PCIe"},
            {"controller_properties/controller_state", "attrib_on"},
            {"controller_properties/controller_discoverable", "attrib_off"},
            {"device_connected/item0/Keys/device_address", "00:00:5E:00:53:02"},
            {"device_connected/item0/Keys/device_minorType", "Keyboard"},
            {"device_connected/item0/Keys/device_firmwareVersion", "1.2"},
            {"device_connected/item0/Keys/device_vendorID", "0x004C"},
            {"device_connected/item0/Keys/device_productID", "0x029C"},
            {"device_connected/item0/Keys/device_serialNumber", "K1"},
            {"device_not_connected/item0/Mouse/device_address", "00:00:5E:00:53:03"},
            {"device_not_connected/item1/Pods/device_address", "00:00:5E:00:53:04"}});
  EXPECT_EQ(written(collect_bluetooth, mac), bluetooth("+Bluetooth=\n"
                                                       "address=00:00:5E:00:53:01\n"
                                                       "chipset=BCM_4387\n"
                                                       "firmware=21.1\n"
                                                       "vendor-id=0x004C\n"
                                                       "product-id=0x4A12\n"
                                                       "transport=PCIe\n"
                                                       "powered=1\n"
                                                       "discoverable=0\n"
                                                       "*Device:1=Keys\n"
                                                       "connected=1\n"
                                                       "address=00:00:5E:00:53:02\n"
                                                       "minor-type=Keyboard\n"
                                                       "firmware=1.2\n"
                                                       "vendor-id=0x004C\n"
                                                       "product-id=0x029C\n"
                                                       "serial=K1\n"
                                                       "*Device:2=Mouse\n"
                                                       "connected=0\n"
                                                       "address=00:00:5E:00:53:03\n"
                                                       "*Device:3=Pods\n"
                                                       "connected=0\n"
                                                       "address=00:00:5E:00:53:04\n"
                                                       "-\n"));
}

TEST(Bluetooth, HasTheControllerAndDevicesOfOlderSystems) {
  Mac mac;
  add_item(mac.profiler, kBluetooth,
           {{"apple_bluetooth_version", "4.0.8f17"},
            {"local_device_title/general_name", "Mac"},
            {"local_device_title/general_address", "00-00-5e-00-53-01"},
            {"local_device_title/general_mfg", "Broadcom"},
            {"local_device_title/general_fw_version", "v41"},
            {"local_device_title/general_vendorID", "0x5ac"},
            {"local_device_title/general_productID", "0x821a"},
            {"local_device_title/general_power", "attrib_On"},
            {"device_title/item0/Mouse/device_addr", "00-00-5e-00-53-02"},
            {"device_title/item0/Mouse/device_isconnected", "attrib_No"},
            {"device_title/item0/Mouse/device_minorClassOfDevice_string", "Mouse"},
            {"device_title/item0/Mouse/device_fw_version", "3"},
            {"device_title/item0/Mouse/device_manufacturer", "Maker"}});
  EXPECT_EQ(written(collect_bluetooth, mac), bluetooth("+Bluetooth=\n"
                                                       "software-version=4.0.8f17\n"
                                                       "name=Mac\n"
                                                       "address=00-00-5e-00-53-01\n"
                                                       "manuf=Broadcom\n"
                                                       "firmware=v41\n"
                                                       "vendor-id=0x5ac\n"
                                                       "product-id=0x821a\n"
                                                       "powered=1\n"
                                                       "*Device:1=Mouse\n"
                                                       "address=00-00-5e-00-53-02\n"
                                                       "minor-type=Mouse\n"
                                                       "firmware=3\n"
                                                       "manuf=Maker\n"
                                                       "connected=0\n"
                                                       "-\n"));
}

TEST(Bluetooth, ReadsTheFirmwareKeysOfTheSystemsInBetween) {
  Mac mac;
  add_item(mac.profiler, kBluetooth,
           {{"local_device_title/general_chipset", "4364B0"},
            {"local_device_title/general_firmware_version", "v83"},
            {"device_title/item0/Mouse/device_firmware_version", "4"}});
  EXPECT_EQ(written(collect_bluetooth, mac),
            bluetooth("+Bluetooth=\nchipset=4364B0\nfirmware=v83\n*Device:1=Mouse\nfirmware=4\n-\n"));
}

TEST(Bluetooth, FindsTheControllerUnderItsNameOnTheOldestSystems) {
  Mac mac;
  add_item(mac.profiler, kBluetooth,
           {{"local_device_title/item0/mini/general_address", "00-00-5e-00-53-01"}});
  EXPECT_EQ(written(collect_bluetooth, mac), bluetooth("*Bluetooth=\naddress=00-00-5e-00-53-01\n"));
}

TEST(Bluetooth, NamesADeviceByItsOriginalName) {
  Mac mac;
  add_item(mac.profiler, kBluetooth,
           {{"device_connected/item0/First_s_Mouse/device_address", "00:00:5E:00:53:02"}});
  mac.profiler.root().annotate_tag("/SPBluetoothDataType/_items/item0/device_connected/item0/First_s_Mouse",
                                   "key", "First’s Mouse");
  EXPECT_EQ(written(collect_bluetooth, mac),
            bluetooth("+Bluetooth=\n*Device:1=First’s Mouse\nconnected=1\naddress=00:00:5E:00:53:02\n-\n"));
}

TEST(Bluetooth, WritesOnlyTheControllerWithoutPeople) {
  Mac mac;
  mac.with_people = false;
  for (const char* list : {"device_connected", "device_not_connected", "device_title"}) {
    const std::string address = std::string(list) + "/item0/Pods/device_address";
    add_item(
        mac.profiler, kBluetooth,
        {{"controller_properties/controller_chipset", "BCM_4387"}, {address.c_str(), "00:00:5E:00:53:02"}});
  }
  EXPECT_EQ(written(collect_bluetooth, mac), bluetooth("*Bluetooth=\nchipset=BCM_4387\n"));
}

TEST(Bluetooth, ReadsDevicesThatAreNotInAList) {
  Mac mac;
  add_item(mac.profiler, kBluetooth, {{"device_title/Mouse/device_addr", "00-00-5e-00-53-02"}});
  EXPECT_EQ(written(collect_bluetooth, mac),
            bluetooth("+Bluetooth=\n*Device:1=Mouse\naddress=00-00-5e-00-53-02\n-\n"));
}

TEST(Bluetooth, IsEmptyWithoutData) {
  Mac mac;
  EXPECT_EQ(written(collect_bluetooth, mac), kEmptySnapshot);
  add_item(
      mac.profiler, kBluetooth,
      {{"controller_properties", "none"}, {"device_connected", 3}, {"local_device_title/item0", "text"}});
  EXPECT_EQ(written(collect_bluetooth, mac), kEmptySnapshot);
}

}  // namespace
