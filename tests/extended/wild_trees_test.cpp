// The collectors of the extended scan on random trees and outputs, in which keys are missing, of the wrong
// kind, oddly nested and absurd.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "extended/extended.h"
#include "tests/collectors/wildness.h"
#include "tests/extended/mac.h"

namespace {

constexpr const char* kProfilerTypes[] = {
    "SPHardwareDataType",    "SPSoftwareDataType",  "SPMemoryDataType",    "SPDisplaysDataType",
    "SPPowerDataType",       "SPSerialATADataType", "SPUSBDataType",       "SPNetworkDataType",
    "SPAirPortDataType",     "SPFirewallDataType",  "SPBluetoothDataType", "SPApplicationsDataType",
    "SPParallelSCSIDataType"};
constexpr const char* kAdditionalTypes[] = {"SPStorageDataType",        "SPNVMeDataType",
                                            "SPUSBHostDataType",        "SPThunderboltDataType",
                                            "SPInstallHistoryDataType", "SPiBridgeDataType"};

constexpr const char* kLists[] = {"_items",
                                  "volumes",
                                  "Media",
                                  "spdisplays_ndrvs",
                                  "device_connected",
                                  "device_title",
                                  "local_device_title",
                                  "com.apple.corestorage.pv",
                                  "spairport_airport_interfaces",
                                  "spfirewall_services",
                                  "signed_by"};

constexpr const char* kKeys[] = {"_items",
                                 "_items",
                                 "_name",
                                 "item0",
                                 "item1",
                                 "machine_model",
                                 "number_processors",
                                 "chip_type",
                                 "physical_memory",
                                 "SPMemoryDataType",
                                 "global_ecc_state",
                                 "sppci_cores",
                                 "spdisplays_metal",
                                 "spdisplays_ndrvs",
                                 "_spdisplays_resolution",
                                 "spdisplays_connection_type",
                                 "spdisplays_main",
                                 "sppower_battery_health_info",
                                 "sppower_battery_cycle_count",
                                 "sppower_battery_charge_info",
                                 "sppower_ac_charger_watts",
                                 "device_model",
                                 "smart_status",
                                 "bsd_name",
                                 "size",
                                 "size_in_bytes",
                                 "free_space",
                                 "free_space_in_bytes",
                                 "volumes",
                                 "Media",
                                 "removable_media",
                                 "mount_point",
                                 "file_system",
                                 "physical_drive",
                                 "com.apple.corestorage.pv",
                                 "com.apple.corestorage.lv",
                                 "com.apple.corestorage.lv.encrypted",
                                 "device_name",
                                 "protocol",
                                 "is_internal_disk",
                                 "interface",
                                 "IPv4",
                                 "Addresses",
                                 "DNS",
                                 "ServerAddresses",
                                 "dhcp",
                                 "Ethernet",
                                 "MediaOptions",
                                 "spairport_airport_interfaces",
                                 "location_id",
                                 "USBKeyLocationID",
                                 "USBDeviceKeySerialNumber",
                                 "device_name_key",
                                 "receptacle_1_tag",
                                 "current_speed_key",
                                 "controller_properties",
                                 "local_device_title",
                                 "device_connected",
                                 "device_title",
                                 "device_address",
                                 "arch_kind",
                                 "signed_by",
                                 "install_version",
                                 "install_date",
                                 "spfirewall_services",
                                 "value",
                                 "activation_lock_status"};

constexpr const char* kTexts[] = {"",
                                  " ",
                                  "yes",
                                  "TRUE",
                                  "no",
                                  "_",
                                  "proc 8:6:2",
                                  "proc ",
                                  "4 GB",
                                  "nan GB",
                                  "1e40 TB",
                                  "Verified",
                                  "disk0",
                                  "disk0s1",
                                  "disk",
                                  "disk99999999999999999999",
                                  "/",
                                  "/System/Volumes/Update",
                                  "Disk Image",
                                  "APFS",
                                  "1 x 2 @ ",
                                  "@",
                                  "spbattery_information",
                                  "sppower_ac_charger_information",
                                  "XProtectPlistConfigData",
                                  "spfirewall_allow_local",
                                  "Apple ",
                                  "VirtualMac",
                                  "999999999999999999999",
                                  "\xff",
                                  "a\nb\r\nc",
                                  "20110112153045.000000+060"};

constexpr int64_t kNumbers[] = {0, 1, -1, 14, INT64_MAX, INT64_MIN};

constexpr const char* kOutputs[] = {"",
                                    "\n",
                                    ":",
                                    "=",
                                    "ProductName",
                                    "ProductName:\t",
                                    "hw.physicalcpu: 99999999999999999999\n",
                                    "hw.perflevel0.physicalcpu: 1\nhw.perflevel0.name:\n",
                                    "FileVault is ",
                                    "FileVault is On",
                                    "System Integrity Protection status:",
                                    "assessments ",
                                    "MDM enrollment: Yes (",
                                    "/",
                                    "No such file or directory",
                                    "\xff\xfe\n\r\n"};

class WildMac {
 public:
  explicit WildMac(unsigned seed) : chance_(seed) {
    for (const char* data_type : kProfilerTypes) fill(mac_.profiler, data_type);
    for (const char* data_type : kAdditionalTypes) fill(mac_.additional, data_type);
    ToolOutputs& tools = mac_.tools;
    for (Text* output : {&tools.sw_vers, &tools.sysctl, &tools.fdesetup, &tools.csrutil, &tools.spctl,
                         &tools.profiles, &tools.rosetta})
      *output = chance_.number_below(5) > 0 ? copy_text(chance_.one_of(kOutputs)) : nullptr;
  }

  Mac& mac() { return mac_; }

 private:
  void fill(InventoryTree& tree, const char* data_type) {
    const int fields = chance_.number_below(40);
    for (int i = 0; i < fields; ++i)
      tree.set_attribute(wild_path(data_type).c_str(), chance_.value_of(kNumbers, kTexts));
  }

  std::string wild_path(const char* data_type) {
    std::string path = std::string("/") + data_type + "/_items" + chance_.item();
    while (chance_.number_below(2) > 0) path += std::string("/") + chance_.one_of(kLists) + chance_.item();
    // A key, or a dictionary with keys in it.
    for (int depth = chance_.number_below(3); depth >= 0; --depth)
      path += std::string("/") + chance_.one_of(kKeys);
    return path;
  }

  Wildness chance_;
  Mac mac_;
};

// What the default scan wrote: some elements of the lists that are continued.
InventoryTree snapshot_before(unsigned seed) {
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/timestamp", text_value("now"));
  snapshot.set_attribute("/OS/os:1/name", text_value("before"));
  for (const char* element :
       {"/Storage/Physical-disks/HDD:1", "/Storage/Physical-disks/Removable:2",
        "/Storage/Logical-disks/partition:1", "/Peripherals/USB/Device:1", "/Network/Adapters/net-adapter:1",
        "/Security/Firewall", "/Video/Monitors/Monitor:1"}) {
    if ((seed >>= 1) % 2 != 0) continue;
    snapshot.set_attribute((std::string(element) + "/model").c_str(), text_value("before"));
    snapshot.set_attribute((std::string(element) + "/bsd-name").c_str(), text_value("disk0s1"));
  }
  return snapshot;
}

std::string scanned(Mac& mac, unsigned seed) {
  InventoryTree snapshot = snapshot_before(seed);
  collect_extended(snapshot, mac.inputs());
  return tree_text(snapshot);
}

// Whether a text contains all the lines of another, in their order.
bool contains_in_order(const std::string& text, const std::string& lines) {
  size_t at = 0;
  for (size_t start = 0; start < lines.size();) {
    const size_t end = lines.find('\n', start) + 1;
    const std::string line = lines.substr(start, end - start);
    while (at < text.size() && text.compare(at, line.size(), line) != 0) at = text.find('\n', at) + 1;
    if (at >= text.size()) return false;
    at += line.size();
    start = end;
  }
  return true;
}

// A collector may shorten values in the trees that it reads; a second run must not notice.
TEST(WildTrees, GiveTheSameTwice) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    WildMac wild(seed);
    const std::string text = scanned(wild.mac(), seed);
    EXPECT_EQ(text, scanned(wild.mac(), seed)) << seed;
  }
}

TEST(WildTrees, LeaveEveryEarlierLineInItsPlace) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    WildMac wild(seed);
    const std::string before = tree_text(snapshot_before(seed));
    EXPECT_TRUE(contains_in_order(scanned(wild.mac(), seed), before)) << seed;
  }
}

// The test above must be able to fail.
TEST(WildTrees, AreComparedLineByLine) {
  EXPECT_TRUE(contains_in_order("a\nb\nc\n", "a\nc\n"));
  EXPECT_FALSE(contains_in_order("a\nb\nc\n", "c\na\n"));
  EXPECT_FALSE(contains_in_order("ab\n", "a\n"));
}

}  // namespace
