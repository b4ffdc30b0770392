#include "extended/disks.h"

#include <gtest/gtest.h>

#include "collectors/fields.h"
#include "tests/extended/storage_items.h"

namespace {

Item nvme(const char* model) { return {{"device_model", model}}; }

// The first lines of every internal and of every external disk.
const std::string kInternal = "mediatype=3\n~type=media-type\n";
const std::string kExternal = "media-type=2\n";

TEST(Disks, DescribeAnNvmeDisk) {
  Mac mac;
  add_item(
      mac.additional, kNvmeType,
      controller({holding("volumes", {{{"_name", "EFI"}}, {{"bsd_name", "disk0s2"}}, {{"_name", "Main"}}},
                          {{"device_model", "FAST SSD"},
                           {"device_serial", "S1"},
                           {"device_revision", "R1"},
                           {"size", "500.28 GB"},
                           {"size_in_bytes", 500277792768},
                           {"smart_status", "Verified"},
                           {"bsd_name", "disk0"},
                           {"partition_map_type", "guid_partition_map_type"},
                           {"spnvme_linkspeed", "16.0 GT/s"},
                           {"spnvme_linkwidth", "x4"},
                           {"spnvme_trim_support", "Yes"}})}));
  EXPECT_EQ(written(collect_disks, mac), disks("*HDD:1=\ninterface=NVMe\n" + kInternal +
                                               "model=FAST SSD\n"
                                               "size=500\n~base-value=500277792768\n"
                                               "serial=S1\n"
                                               "fw-rev=R1\n"
                                               "partitions=2\n"
                                               "smart-status=Verified\n"
                                               "bsd-name=disk0\n"
                                               "partition-map=guid_partition_map_type\n"
                                               "link-speed=16.0 GT/s\n"
                                               "link-width=x4\n"
                                               "trim-support=1\n"
                                               "source=SPNVMeDataType\n"));
}

TEST(Disks, HaveTheMediumOfAnNvmeDiskFromItsVolumes) {
  Mac mac;
  add_item(mac.additional, kNvmeType, controller({nvme("FAST SSD")}));
  add_item(mac.additional, kStorageType,
           with(volume("Main", "disk3s1", "/"),
                with(on_drive("FAST SSD", "Apple Fabric", "yes"), {{"physical_drive/medium_type", "ssd"}})));
  EXPECT_EQ(written(collect_disks, mac),
            disks("*HDD:1=\ninterface=NVMe\n" + kInternal +
                  "model=FAST SSD\npartitions=0\nmedium=ssd\ninternal=1\nsource=SPNVMeDataType\n"));
}

TEST(Disks, ContinueTheNumbersOfTheSnapshot) {
  Mac mac;
  add_item(mac.additional, kNvmeType, controller({nvme("A"), nvme("B")}));
  add_item(mac.additional, kNvmeType, controller({nvme("C")}));
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/Storage/Physical-disks/HDD:1/model", text_value("SATA"));
  snapshot.set_attribute("/Storage/Physical-disks/HDD:3/model", text_value("SATA"));
  collect_disks(snapshot, mac.inputs());
  const Tag& list = *snapshot.top().find_child("Storage")->find_child("Physical-disks");
  EXPECT_STREQ(find_text(*list.find_child("HDD:1"), "model"), "SATA");
  EXPECT_STREQ(find_text(*list.find_child("HDD:2"), "model"), "A");
  EXPECT_STREQ(find_text(*list.find_child("HDD:4"), "model"), "B");
  EXPECT_STREQ(find_text(*list.find_child("HDD:5"), "model"), "C");
}

TEST(Disks, DescribeAUsbDiskByItsMedia) {
  Mac mac;
  add_item(mac.profiler, kUsbType,
           controller({controller({holding("Media",
                                           {holding("volumes", {{{"_name", "Backup"}}},
                                                    {{"_name", "Portable Media"},
                                                     {"bsd_name", "disk4"},
                                                     {"size_in_bytes", 1000204886016},
                                                     {"smart_status", "Verified"},
                                                     {"partition_map_type", "guid_partition_map_type"}})},
                                           {{"_name", "Portable"},
                                            {"serial_num", "U1"},
                                            {"manufacturer", "Maker"},
                                            {"bcd_device", "1.00"},
                                            {"device_speed", "super_speed"}})})}));
  EXPECT_EQ(written(collect_disks, mac), disks("*Removable:1=Portable Media\n" + kExternal +
                                               "interface=USB\n"
                                               "model=Portable\n"
                                               "serial=U1\n"
                                               "manufacturer=Maker\n"
                                               "bcd-device=1.00\n"
                                               "link-speed=super_speed\n"
                                               "size=1000\n~base-value=1000204886016\n"
                                               "partitions=1\n"
                                               "smart-status=Verified\n"
                                               "bsd-name=disk4\n"
                                               "partition-map=guid_partition_map_type\n"
                                               "source=SPUSBDataType\n"));
}

TEST(Disks, SkipAUsbDiskOfTheDefaultScan) {
  Mac mac;
  add_item(mac.profiler, kUsbType,
           controller({holding("Media", {{{"_name", "Medium"}}},
                               {{"_name", "Stick"}, {"bsd_name", "disk2"}, {"removable_media", "yes"}})}));
  add_volume(mac, volume("A", "disk9s1", "/Volumes/A"), on_drive("Stick", "USB", "no"));
  add_volume(mac, volume("B", "disk2s1", "/Volumes/B"), on_drive("Another name", "USB", "no"));
  EXPECT_EQ(written(collect_disks, mac), kEmptySnapshot);
}

TEST(Disks, DoNotRepeatAUsbDiskThatIsListedByItsMedia) {
  Mac mac;
  add_item(mac.profiler, kUsbType,
           controller(
               {holding("Media", {{{"_name", "Medium"}, {"bsd_name", "disk4"}}}, {{"_name", "Portable"}})}));
  add_volume(mac, volume("A", "disk7s1", "/Volumes/A"), on_drive("Medium", "USB", "no"));
  add_volume(mac, volume("B", "disk8s1", "/Volumes/B"), on_drive("Portable", "USB", "no"));
  add_volume(mac, volume("C", "disk4s2", "/Volumes/C"), on_drive("Another name", "USB", "no"));
  EXPECT_EQ(written(collect_disks, mac),
            disks("*Removable:1=Medium\n" + kExternal +
                  "interface=USB\nmodel=Portable\npartitions=0\nbsd-name=disk4\nsource=SPUSBDataType\n"));
}

TEST(Disks, IncludeThoseKnownOnlyFromTheirVolumes) {
  Mac mac;
  const Item drive = with(on_drive("PORTABLE", "USB", "no"),
                          {{"physical_drive/medium_type", "rotational"},
                           {"physical_drive/smart_status", "Not Supported"},
                           {"physical_drive/partition_map_type", "unknown_partition_map_type"}});
  add_volume(mac, volume("A", "disk5s1", "/Volumes/A"), drive);
  add_volume(mac, volume("Main", "disk3s1", "/"), on_drive("FUSED SSD", "Apple Fabric", "yes"));
  add_volume(mac, volume("B", "disk6s2", "/Volumes/B"), drive);
  EXPECT_EQ(written(collect_disks, mac), disks("*Removable:1=\n" + kExternal +
                                               "interface=USB\n"
                                               "model=PORTABLE\n"
                                               "partitions=2\n"
                                               "medium=rotational\n"
                                               "smart-status=Not Supported\n"
                                               "partition-map=unknown_partition_map_type\n"
                                               "internal=0\n"
                                               "source=SPStorageDataType\n"
                                               "*HDD:1=\ninterface=Apple Fabric\n" +
                                               kInternal +
                                               "model=FUSED SSD\n"
                                               "partitions=1\n"
                                               "internal=1\n"
                                               "source=SPStorageDataType\n"));
}

TEST(Disks, AreDistinguishedByBsdNameWithoutAModel) {
  Mac mac;
  const Item external = {{"physical_drive/is_internal_disk", "no"}};
  add_volume(mac, volume("A", "disk5s1", "/Volumes/A"), external);
  add_volume(mac, volume("B", "disk5s2", "/Volumes/B"), external);
  add_volume(mac, volume("C", "disk51s1", "/Volumes/C"), external);
  EXPECT_EQ(written(collect_disks, mac),
            disks("*Removable:1=\n" + kExternal +
                  "partitions=2\ninternal=0\nsource=SPStorageDataType\n*Removable:2=\n" + kExternal +
                  "partitions=1\ninternal=0\nsource=SPStorageDataType\n"));
}

TEST(Disks, DoNotRepeatADiskOfAnEarlierList) {
  Mac mac;
  add_item(mac.profiler, kSataType,
           controller({{{"device_model", "SATA"}, {"bsd_name", "disk1"}, {"smart_status", "Verified"}}}));
  add_item(mac.additional, kNvmeType, controller({nvme("NVME")}));
  add_volume(mac, volume("A", "disk7s1", "/Volumes/A"), on_drive("SATA", "SATA", "yes"));
  add_volume(mac, volume("B", "disk1s1", "/Volumes/B"), on_drive("ANOTHER NAME", "SATA", "yes"));
  add_volume(mac, volume("C", "disk8s1", "/Volumes/C"), on_drive("NVME", "PCI-Express", "yes"));
  EXPECT_EQ(written(collect_disks, mac),
            disks("*HDD:1=\ninterface=NVMe\n" + kInternal +
                  "model=NVME\npartitions=0\ninternal=1\nsource=SPNVMeDataType\n"));
}

TEST(Disks, IncludeEveryDiskOfAVolumeThatSpansSeveral) {
  Mac mac;
  add_item(mac.additional, kStorageType,
           with(volume("Main", "disk2", "/"), {{"com.apple.corestorage.pv/item0/device_name", "SSD"},
                                               {"com.apple.corestorage.pv/item0/is_internal_disk", "yes"},
                                               {"com.apple.corestorage.pv/item1/device_name", "HDD"},
                                               {"com.apple.corestorage.pv/item1/is_internal_disk", "yes"}}));
  EXPECT_EQ(written(collect_disks, mac),
            disks("*HDD:1=\n" + kInternal +
                  "model=SSD\npartitions=1\ninternal=1\nsource=SPStorageDataType\n*HDD:2=\n" + kInternal +
                  "model=HDD\npartitions=1\ninternal=1\nsource=SPStorageDataType\n"));
}

TEST(Disks, AreInternalUnlessTheySayOtherwise) {
  Mac mac;
  add_item(mac.additional, kStorageType,
           with(volume("Main", "disk3s1", "/"), {{"physical_drive/device_name", "SSD"}}));
  EXPECT_EQ(written(collect_disks, mac),
            disks("*HDD:1=\n" + kInternal + "model=SSD\npartitions=1\nsource=SPStorageDataType\n"));
}

TEST(Disks, SkipDiskImages) {
  Mac mac;
  add_volume(mac, volume("Cryptex", "disk4s1", "/System/Library/A"),
             on_drive("Disk Image", "Disk Image", "no"));
  EXPECT_EQ(written(collect_disks, mac), kEmptySnapshot);
}

TEST(Disks, AreEmptyWithoutData) {
  Mac mac;
  EXPECT_EQ(written(collect_disks, mac), kEmptySnapshot);
  add_item(mac.additional, kNvmeType, {{"_name", "controller"}});
  add_item(mac.additional, kStorageType, {{"_name", "volume"}, {"physical_drive", "text"}});
  EXPECT_EQ(written(collect_disks, mac), kEmptySnapshot);
}

TEST(Disks, AreFoundOnDeeplyNestedHubs) {
  Mac mac;
  std::string path = "_items/item0";
  for (int depth = 0; depth < 300; ++depth) path += "/_items/item0";
  add_item(mac.profiler, kUsbType, {{path + "/Media/item0/_name", "Deep"}});
  EXPECT_EQ(written(collect_disks, mac),
            disks("*Removable:1=Deep\n" + kExternal + "interface=USB\npartitions=0\nsource=SPUSBDataType\n"));
}

}  // namespace
