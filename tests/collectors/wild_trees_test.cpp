// The collectors over random trees, in which keys are missing, of the wrong kind, nested and absurd.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "collectors/applications.h"
#include "collectors/computer_system.h"
#include "collectors/displays.h"
#include "collectors/firewall.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/operating_system.h"
#include "collectors/printers.h"
#include "collectors/processors.h"
#include "collectors/storage.h"
#include "collectors/usb.h"
#include "tests/collectors/tool_helpers.h"
#include "tests/collectors/tree_helpers.h"
#include "tests/collectors/wildness.h"

namespace {

struct DataType {
  const char* name;
  std::vector<const char*> keys;
};

const DataType kDataTypes[] = {
    {"SPHardwareDataType",
     {"packages", "number_processors", "cpu_type", "l2_cache", "l2_cache_core", "l3_cache", "l3_cache_core",
      "current_processor_speed", "physical_memory", "machine_model", "platform_UUID", "serial_number"}},
    {"SPMemoryDataType",
     {"_name", "dimm_status", "dimm_size", "dimm_speed", "dimm_type", "dimm_manufacturer"}},
    {"SPNetworkDataType",
     {"_name", "interface", "type", "ip_address", "ip_address/item0", "ip_address/item1", "SubnetMasks",
      "SubnetMasks/item0", "Ethernet", "Ethernet/MAC_Address", "IPv4", "IPv4/Router"}},
    {"SPSoftwareDataType", {"os_version", "kernel_version", "uptime", "64bit_kernel_and_kexts"}},
    {"SPApplicationsDataType",
     {"_name", "version", "lastModified", "info", "path", "runtime_environment", "has64BitIntelCode"}},
    {"SPDisplaysDataType",
     {"_name", "_spdisplays_edid", "spdisplays_main", "spdisplays_ndrvs", "spdisplays_vram", "sppci_model"}},
    {"SPPowerDataType",
     {"_name", "AC_Power", "AC_Power/System_Sleep_Timer", "AC_Power/Wake_On_LAN",
      "Battery_Power/Disk_Sleep_Timer", "Battery_Power/ReduceBrightness"}},
    {"SPSerialATADataType",
     {"_name", "smart_status", "device_model", "device_serial", "size", "size_in_bytes", "free_space",
      "free_space_in_bytes", "file_system", "iocontent", "mount_point", "volumes"}},
    {"SPParallelSCSIDataType", {"_name", "device_model", "device_revision", "size", "free_space", "volumes"}},
    {"SPParallelATADataType", {"_name", "device_model"}},
    {"SPUSBDataType",
     {"_name", "removable_media", "bsd_name", "d_serial_num", "device_speed", "size", "size_in_bytes",
      "free_space", "free_space_in_bytes", "volumes", "bus_power"}},
    {"SPPrintersDataType", {"_name", "default", "status", "scanner", "scannerUUID", "fax", "uri", "ppd"}},
    {"SPFirewallDataType",
     {"spfirewall_globalstate", "spfirewall_services", "spfirewall_stealthenabled", "_name", "value"}},
};

// Where the items of a data type hold items of their own.
constexpr const char* kLists[] = {"_items", "_items", "volumes", "spdisplays_ndrvs", "spfirewall_services"};

constexpr const char* kTexts[] = {"",
                                  " ",
                                  "ok",
                                  "yes",
                                  "4 GB",
                                  "1,5 GB",
                                  "nan GB",
                                  "1e40 TB",
                                  "GB",
                                  "inf GHz",
                                  "2.4 GHz",
                                  "00:1e:c2",
                                  "\xff",
                                  "a\nb\r\nc",
                                  "up 2:03:04:05",
                                  "Mac OS X 10.6.8 (10K549)",
                                  "20110112153045.000000+060",
                                  "Yes",
                                  "No",
                                  "no",
                                  "Verified",
                                  "Apple_CoreStorage",
                                  "disk1",
                                  "high_speed",
                                  "spdisplays_yes",
                                  "spdisplays_display_connector",
                                  "sppower_information",
                                  "spfirewall_globalstate_limit_connections",
                                  "spfirewall_block_all",
                                  "0x00ffffffffffff0006105f9c"};

constexpr int64_t kNumbers[] = {0, 1, 2, -1, 1025, 2000000000, INT64_MAX, INT64_MIN};

class WildTree {
 public:
  explicit WildTree(unsigned seed) : chance_(seed), tree_(empty_profiler()) {
    for (const DataType& data_type : kDataTypes) {
      const int fields = chance_.number_below(30);
      for (int i = 0; i < fields; ++i)
        tree_.set_attribute(wild_path(data_type).c_str(), chance_.value_of(kNumbers, kTexts));
    }
  }

  InventoryTree& tree() { return tree_; }

 private:
  std::string wild_path(const DataType& data_type) {
    std::string path = std::string("/") + data_type.name + "/_items" + chance_.item();
    while (chance_.number_below(2) > 0) path += std::string("/") + chance_.one_of(kLists) + chance_.item();
    path += std::string("/") + chance_.one_of(data_type.keys);
    // Now and then a key holds keys where a text is expected.
    if (chance_.number_below(8) == 0) path += std::string("/") + chance_.one_of(data_type.keys);
    return path;
  }

  Wildness chance_;
  InventoryTree tree_;
};

using Collector = void (*)(InventoryTree&, InventoryTree&);
constexpr Collector kCollectors[] = {
    collect_processors,   collect_memory,   collect_network_adapters, collect_os,
    collect_applications, collect_displays, collect_system,           collect_storage,
    collect_printers,     collect_usb,      collect_firewall,
};

// What a collector shortens in the profiler tree it reads just so again.
TEST(WildTrees, GiveTheSameSnapshotTwice) {
  const FakeTools tools;
  tools.write("ioreg", "echo '\"IOPlatformUUID\" = \"uuid\"'");
  tools.write("diskutil", "echo 'Device / Media Name: A Media'");
  for (unsigned seed = 0; seed < 300; ++seed) {
    WildTree wild(seed);
    for (const Collector collect : kCollectors) {
      const std::string text = collected(collect, wild.tree());
      EXPECT_EQ(collected(collect, wild.tree()), text) << seed;
    }
  }
}

}  // namespace
