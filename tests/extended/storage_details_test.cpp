#include "extended/storage_details.h"

#include <gtest/gtest.h>

#include "collectors/fields.h"
#include "tests/extended/storage_items.h"

namespace {

TEST(StorageDetails, DescribeADisk) {
  Mac mac;
  add_item(mac.profiler, kSataType,
           controller({{{"device_model", "HD"},
                        {"smart_status", "Verified"},
                        {"bsd_name", "disk0"},
                        {"spsata_medium_type", "Rotational"},
                        {"spsata_rotational_rate", 7200},
                        {"partition_map_type", "guid_partition_map_type"},
                        {"spsata_trim_support", "No"}}}));
  EXPECT_EQ(written(collect_storage_details, mac), details("*HDD:1=\n"
                                                           "bsd-name=disk0\n"
                                                           "smart-status=Verified\n"
                                                           "medium=Rotational\n"
                                                           "rotational-rate=7200\n"
                                                           "partition-map=guid_partition_map_type\n"
                                                           "trim-support=0\n"));
}

TEST(StorageDetails, NumberTheDisksAsTheirListDoes) {
  Mac mac;
  add_item(mac.profiler, kSataType,
           controller({{{"device_model", "DVD"}},
                       {{"device_model", "A"}, {"smart_status", "Verified"}},
                       {{"device_model", "B"}, {"smart_status", "Failing"}}}));
  add_item(mac.profiler, "SPParallelSCSIDataType",
           holding("_items", {controller({{{"device_model", "C"}, {"bsd_name", "disk9"}}})}));
  EXPECT_EQ(
      written(collect_storage_details, mac),
      details("*HDD:1=\nsmart-status=Verified\n*HDD:2=\nsmart-status=Failing\n*HDD:3=\nbsd-name=disk9\n"));
}

TEST(StorageDetails, JoinADiskByItsModel) {
  Mac mac;
  add_item(mac.profiler, kSataType, controller({{{"device_model", "HD"}, {"smart_status", "Verified"}}}));
  add_item(mac.additional, kStorageType,
           with(volume("A", "disk2s1", "/"),
                with(on_drive("HD", "SATA", "yes"), {{"physical_drive/medium_type", "ssd"}})));
  EXPECT_EQ(written(collect_storage_details, mac),
            details("*HDD:1=\nmedium=ssd\ninternal=1\nsmart-status=Verified\n"));
}

TEST(StorageDetails, JoinAPartitionByItsBsdName) {
  Mac mac;
  add_item(mac.profiler, kSataType,
           controller({holding(
               "volumes",
               {{{"_name", "EFI"}, {"bsd_name", "disk0s1"}, {"iocontent", "EFI"}, {"volume_uuid", "0-1"}},
                {{"bsd_name", "disk0s2"}},
                {{"_name", "Main"}, {"bsd_name", "disk0s3"}, {"writable", "yes"}}},
               {{"device_model", "HD"}, {"smart_status", "Verified"}})}));
  add_volume(mac, volume("Main", "disk0s3", "/"), on_drive("OTHER", "SATA", "yes"));
  EXPECT_EQ(written(collect_storage_details, mac),
            details("*HDD:1=\nsmart-status=Verified\n"
                    "*partition:1=\nbsd-name=disk0s1\ncontent=EFI\nuuid=0-1\n"
                    "*partition:2=\ndisk=OTHER\ninternal=1\nprotocol=SATA\nbsd-name=disk0s3\nwritable=1\n"));
}

TEST(StorageDetails, JoinThePartitionsAfterThoseOfHardDisks) {
  Mac mac;
  add_item(mac.profiler, kSataType,
           controller({holding("volumes", {{{"_name", "Main"}}}, {{"smart_status", "Verified"}})}));
  add_volume(mac, volume("Stick", "disk2s1", "/Volumes/Stick"), on_drive("STICK", "USB", "no"));
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_tag_value("/Storage/Logical-disks/partition:1", text_value("Main"));
  snapshot.set_attribute("/Storage/Logical-disks/partition:1/bsd-name", text_value("disk2s1"));
  snapshot.set_attribute("/Storage/Logical-disks/partition:2/bsd-name", text_value("disk2s1"));
  snapshot.set_attribute("/Storage/Logical-disks/partition:3/bsd-name", text_value("disk2s2"));
  collect_storage_details(snapshot, mac.inputs());
  const Tag& list = *snapshot.top().find_child("Storage")->find_child("Details");
  EXPECT_EQ(list.find_child("partition:1"), nullptr);
  EXPECT_STREQ(find_text(*list.find_child("partition:2"), "disk"), "STICK");
  EXPECT_EQ(list.find_child("partition:3"), nullptr);
}

TEST(StorageDetails, AreEmptyWithoutDisks) {
  Mac mac;
  add_volume(mac, volume("Main", "disk0s2", "/"));
  EXPECT_EQ(written(collect_storage_details, mac), kEmptySnapshot);
}

}  // namespace
