#include "extended/extended.h"

#include <gtest/gtest.h>

#include <chrono>

#include "collectors/fields.h"
#include "tests/extended/mac.h"

namespace {

using Clock = std::chrono::steady_clock;

// Fills a long list as raw trees do, without a search for each element.
void add_applications(InventoryTree& profiler, int count) {
  Place items(profiler.root(), "/SPApplicationsDataType/_items");
  for (int i = 0; i < count; ++i) {
    Place item(items, "item" + std::to_string(i), Place::Names::distinct);
    item.set_attribute("arch_kind", text_value("arch_arm_i64"));
    Place signers(item, "signed_by", Place::Names::distinct);
    signers.set_attribute("item0", text_value("Signer"));
  }
}

void add_entries(InventoryTree& tree, const char* data_type, const char* key, int count) {
  Place items(tree.root(), std::string("/") + data_type + "/_items");
  for (int i = 0; i < count; ++i) {
    Place item(items, "item" + std::to_string(i), Place::Names::distinct);
    item.set_attribute(key, text_value(("disk" + std::to_string(i) + "s1").c_str()));
  }
}

double seconds_of(int count) {
  Mac mac;
  add_applications(mac.profiler, count);
  add_entries(mac.additional, "SPStorageDataType", "bsd_name", count);
  add_entries(mac.additional, "SPInstallHistoryDataType", "_name", count);
  add_entries(mac.profiler, "SPNetworkDataType", "interface", count);
  InventoryTree snapshot = empty_snapshot();
  const Clock::time_point start = Clock::now();
  collect_extended(snapshot, mac.inputs());
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Sixteen times the elements take sixteen times as long; a search for each would take 256 times as long.
TEST(Extended, TakesTimeInProportionToTheData) {
  const double few = seconds_of(1000);
  const double many = seconds_of(16000);
  EXPECT_LT(many, 80 * few + 0.1);
}

TEST(Extended, WritesItsElementsInAFixedOrder) {
  Mac mac;
  mac.tools.sw_vers = copy_text("ProductName: macOS\n");
  mac.tools.spctl = copy_text("assessments enabled\n");
  add_item(
      mac.profiler, "SPPowerDataType",
      {{"_name", "spbattery_information"}, {"sppower_battery_health_info/sppower_battery_cycle_count", 1}});
  add_item(mac.additional, "SPStorageDataType",
           {{"_name", "Main"}, {"mount_point", "/"}, {"physical_drive/device_name", "SSD"}});
  add_item(mac.profiler, "SPDisplaysDataType", {{"sppci_cores", 8}});
  add_item(mac.profiler, "SPNetworkDataType", {{"spnetwork_service_order", 0}});
  add_item(mac.additional, "SPUSBHostDataType", {{"_items/item0/USBKeyHardwareType", "Built-in"}});
  add_item(mac.profiler, "SPApplicationsDataType", {{"arch_kind", "arch_arm_i64"}});
  add_item(mac.additional, "SPInstallHistoryDataType", {{"install_version", "1"}});
  InventoryTree snapshot = empty_snapshot();
  collect_extended(snapshot, mac.inputs());
  std::string names;
  for (const auto& element : snapshot.top().children()) names += element->name() + " ";
  EXPECT_EQ(names, "Platform Security Battery Storage Video Network Peripherals Software-details Packages ");
}

// Details are about what the default scan has, so nothing that the extended scan adds appears twice.
TEST(Extended, WritesNoDetailsOfWhatItAddsItself) {
  Mac mac;
  add_item(mac.additional, "SPStorageDataType",
           {{"_name", "Main"},
            {"bsd_name", "disk3s1"},
            {"mount_point", "/"},
            {"writable", "yes"},
            {"physical_drive/device_name", "SSD"}});
  InventoryTree snapshot = empty_snapshot();
  collect_extended(snapshot, mac.inputs());
  const Tag& storage = *snapshot.top().find_child("Storage");
  EXPECT_EQ(storage.find_child("Details"), nullptr);
  EXPECT_NE(storage.find_child("Physical-disks")->find_child("HDD:1"), nullptr);
  EXPECT_NE(storage.find_child("Logical-disks")->find_child("partition:1"), nullptr);
}

TEST(Extended, WritesNothingForAnEmptyMac) {
  Mac mac;
  InventoryTree snapshot = empty_snapshot();
  collect_extended(snapshot, mac.inputs());
  EXPECT_EQ(tree_text(snapshot), kEmptySnapshot);
}

}  // namespace
