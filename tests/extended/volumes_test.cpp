#include "extended/volumes.h"

#include <gtest/gtest.h>

#include "extended/storage_volumes.h"
#include "tests/extended/storage_items.h"

namespace {

TEST(Volumes, DescribeAVolumeOfAContainer) {
  Mac mac;
  add_item(mac.additional, kStorageType,
           with(with(volume("Main", "disk3s1s1", "/"), on_drive("SSD", "Apple Fabric", "yes")),
                {{"file_system", "Case-sensitive APFS"},
                 {"size_in_bytes", 500000000000},
                 {"free_space_in_bytes", 125000000000},
                 {"volume_uuid", "0-1"},
                 {"writable", "no"}}));
  EXPECT_EQ(written(collect_volumes, mac), partitions("*partition:1=Main\n"
                                                      "file-sys=Case-sensitive APFS\n"
                                                      "bsd-name=disk3s1s1\n"
                                                      "mount-point=/\n"
                                                      "size=500.00\n~base-value=500000000000\n"
                                                      "free=125.00\n~base-value=125000000000\n"
                                                      "used%=75\n~pos=375.00\n~max=500.00\n~val-units=GB\n"
                                                      "system-volume=1\n"
                                                      "uuid=0-1\n"
                                                      "writable=0\n"
                                                      "container=disk3\n"
                                                      "disk=SSD\n"
                                                      "internal=1\n"
                                                      "protocol=Apple Fabric\n"));
}

TEST(Volumes, HaveAContainerOnlyForApfs) {
  Mac mac;
  add_item(mac.additional, kStorageType,
           with(volume("A", "disk3s1", "/Volumes/A"), {{"file_system", "Journaled HFS+"}}));
  EXPECT_EQ(written(collect_volumes, mac),
            partitions("*partition:1=A\nfile-sys=Journaled "
                       "HFS+\nbsd-name=disk3s1\nmount-point=/Volumes/A\nsystem-volume=0\n"));
}

TEST(Volumes, ReadSpaceFromTheTextsOfOlderSystems) {
  Mac mac;
  add_item(mac.additional, kStorageType, {{"_name", "A"}, {"size", "2 GB"}, {"free_space", "0.5 GB"}});
  EXPECT_EQ(written(collect_volumes, mac), partitions("*partition:1=A\nsize=2.15\n~base-value=2147483648\n"
                                                      "free=0.54\n~base-value=536870912\n"
                                                      "used%=75\n~pos=1.61\n~max=2.15\n~val-units=GB\n"));
}

TEST(Volumes, HaveNoUsedShareWithoutBothAmounts) {
  Mac mac;
  add_item(mac.additional, kStorageType, {{"_name", "A"}, {"size_in_bytes", 1000000000}});
  add_item(mac.additional, kStorageType,
           {{"_name", "B"}, {"size_in_bytes", "many"}, {"free_space_in_bytes", 1000000000}});
  EXPECT_EQ(written(collect_volumes, mac), partitions("*partition:1=A\nsize=1.00\n~base-value=1000000000\n"
                                                      "*partition:2=B\nfree=1.00\n~base-value=1000000000\n"));
}

TEST(Volumes, SkipDiskImagesAndUpdates) {
  Mac mac;
  add_volume(mac, volume("Cryptex", "disk4s1", "/System/A"), on_drive("Disk Image", "Disk Image", "no"));
  add_volume(mac, volume("Update", "disk3s4", "/System/Volumes/Update"));
  add_volume(mac, volume("Snapshot", "disk3s5", "/System/Volumes/Update/mnt1"));
  EXPECT_EQ(written(collect_volumes, mac), kEmptySnapshot);
  add_volume(mac, volume("Own", "disk3s6", "/System/Volumes/Updates"));
  EXPECT_EQ(
      written(collect_volumes, mac),
      partitions(
          "*partition:1=Own\nbsd-name=disk3s6\nmount-point=/System/Volumes/Updates\nsystem-volume=0\n"));
}

TEST(Volumes, DoNotRepeatAVolumeOfASataDisk) {
  Mac mac;
  add_item(mac.profiler, kSataType,
           controller(
               {holding("volumes", {{{"_name", "Main"}, {"bsd_name", "disk0s2"}}, {{"bsd_name", "disk0s3"}}},
                        {{"device_model", "HD"}, {"smart_status", "Verified"}})}));
  add_volume(mac, volume("Renamed", "disk0s2", "/"));
  EXPECT_EQ(written(collect_volumes, mac), kEmptySnapshot);
  add_volume(mac, volume("Nameless there", "disk0s3", "/Volumes/B"));
  EXPECT_EQ(
      written(collect_volumes, mac),
      partitions("*partition:1=Nameless there\nbsd-name=disk0s3\nmount-point=/Volumes/B\nsystem-volume=0\n"));
}

TEST(Volumes, ContinueThePartitionsOfTheSnapshot) {
  Mac mac;
  add_volume(mac, volume("By BSD name", "disk2s1", "/Volumes/A"));
  add_volume(mac, volume("By place", "disk9s9", "/Volumes/B"));
  add_volume(mac, volume("By place", "disk9s8", "/Volumes/C"));
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/Storage/Logical-disks/partition:1/bsd-name", text_value("disk2s1"));
  snapshot.set_tag_value("/Storage/Logical-disks/partition:2", text_value("By place"));
  snapshot.set_attribute("/Storage/Logical-disks/partition:2/mount-point", text_value("/Volumes/B"));
  collect_volumes(snapshot, mac.inputs());
  EXPECT_EQ(tree_text(snapshot),
            partitions("*partition:1=\nbsd-name=disk2s1\n*partition:2=By place\nmount-point=/Volumes/B\n"
                       "*partition:3=By place\nbsd-name=disk9s8\nmount-point=/Volumes/C\nsystem-volume=0\n"));
}

TEST(Volumes, AreNotTheSameByNameAlone) {
  Mac mac;
  add_item(mac.additional, kStorageType, {{"_name", "Data"}, {"writable", "yes"}});
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_tag_value("/Storage/Logical-disks/partition:1", text_value("Data"));
  collect_volumes(snapshot, mac.inputs());
  EXPECT_EQ(tree_text(snapshot), partitions("*partition:1=Data\n*partition:2=Data\nwritable=1\n"));
}

TEST(Volumes, HaveTheEncryptionAndTheDisksOfALogicalVolume) {
  Mac mac;
  add_item(mac.additional, kStorageType,
           {{"_name", "Main"},
            {"com.apple.corestorage.lv/com.apple.corestorage.lv.encrypted", "yes"},
            {"com.apple.corestorage.pv/item0/device_name", "SSD"},
            {"com.apple.corestorage.pv/item1/device_name", "HDD"},
            {"com.apple.corestorage.pv/item1/protocol", "SATA"}});
  EXPECT_EQ(written(collect_volumes, mac), partitions("*partition:1=Main\nencrypted=1\ndisk=SSD, HDD\n"));
}

TEST(WholeDisk, EndsAfterTheDigitsOfTheDisk) {
  EXPECT_EQ(whole_disk("disk3s1s1"), "disk3");
  EXPECT_EQ(whole_disk("disk12"), "disk12");
  EXPECT_EQ(whole_disk("disk"), "disk");
  EXPECT_EQ(whole_disk("fuse0"), "fuse0");
  EXPECT_EQ(whole_disk(""), "");
}

}  // namespace
