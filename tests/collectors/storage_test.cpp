#include "collectors/storage.h"

#include <gtest/gtest.h>

#include "collectors/fields.h"
#include "tests/collectors/item_lists.h"

namespace {

constexpr char kSata[] = "SPSerialATADataType";
constexpr char kScsi[] = "SPParallelSCSIDataType";
constexpr char kAta[] = "SPParallelATADataType";

// A controller with devices, a SCSI bus with devices, or a SCSI controller with buses.
Item holder(std::initializer_list<Item> items) { return holding("_items", items); }

const Item kDisk = {{"device_model", "DISK"}, {"smart_status", "Verified"}};
const Item kDrive = {{"device_model", "DVD"}, {"smart_status", "Not Supported"}};

Item disk_with_volumes(std::initializer_list<Item> volumes) { return holding("volumes", volumes, kDisk); }

InventoryTree collect(InventoryTree& profiler) {
  InventoryTree snapshot = empty_snapshot();
  collect_storage(snapshot, profiler);
  return snapshot;
}

InventoryTree collect_sata(std::initializer_list<Item> devices) {
  InventoryTree profiler = profiler_with(kSata, {holder(devices)});
  return collect(profiler);
}

const Tag* find(const InventoryTree& snapshot, const char* list, const std::string& name) {
  const Tag* storage = snapshot.top().find_child("Storage");
  const Tag* elements = storage ? storage->find_child(list) : nullptr;
  return elements ? elements->find_child(name) : nullptr;
}

const Tag& disk(const InventoryTree& snapshot) { return *find(snapshot, "Physical-disks", "HDD:1"); }
const Tag* partition(const InventoryTree& snapshot, int number) {
  return find(snapshot, "Logical-disks", "partition:" + std::to_string(number));
}

// The elements of a list with one attribute of each: "HDD:1=DISK CD:1=DVD ".
std::string list(const InventoryTree& snapshot, const char* name, const char* attribute) {
  const Tag* storage = snapshot.top().find_child("Storage");
  const Tag* elements = storage ? storage->find_child(name) : nullptr;
  std::string text;
  if (!elements) return text;
  for (const auto& element : elements->children()) {
    const char* value = find_text(*element, attribute);
    text += element->name() + "=" + (value ? value : "(none)") + " ";
  }
  return text;
}

std::string disks(const InventoryTree& snapshot) { return list(snapshot, "Physical-disks", "model"); }

TEST(CollectStorage, WritesADiskAndItsVolumesInOrder) {
  const Item volume = {{"_name", "Macintosh HD"},
                       {"bsd_name", "disk0s2"},
                       {"file_system", "Journaled HFS+"},
                       {"free_space", "15,63 GB"},
                       {"free_space_in_bytes", int64_t{16779472896}},
                       {"iocontent", "Apple_CoreStorage"},
                       {"mount_point", "/"},
                       {"size", "232,08 GB"},
                       {"size_in_bytes", int64_t{249199591424}}};
  const Item hard_disk = holding("volumes", {volume},
                                 {{"device_model", "WDC WD2500"},
                                  {"device_revision", "58.01D02"},
                                  {"device_serial", "S-1"},
                                  {"size", "232,89 GB"},
                                  {"size_in_bytes", int64_t{250059350016}},
                                  {"smart_status", "Verified"}});
  InventoryTree profiler = profiler_with(kSata, {holder({hard_disk})});
  EXPECT_EQ(collected(collect_storage, profiler), R"(+Snapshot=
+Storage=
+Physical-disks=
*HDD:1=
model=WDC WD2500
interface=SATA
mediatype=3
~type=media-type
size=250
~base-value=250059350016
serial=S-1
fw-rev=58.01D02
partitions=1
-
+Logical-disks=
*partition:1=Macintosh HD
~kind=encrypted
file-sys=Journaled HFS+
size=249.20
~base-value=249199591424
free=16.78
~base-value=16779472896
mount-point=/
used%=93
~pos=232.42
~max=249.20
~val-units=GB
-
-
-
)");
}

TEST(CollectStorage, WritesNothingWithoutTheDataTypes) {
  InventoryTree profiler = empty_profiler();
  EXPECT_EQ(collected(collect_storage, profiler), tree_text(empty_snapshot()));
}

TEST(CollectStorage, WritesNothingForEmptyPorts) {
  InventoryTree profiler = profiler_with(kSata, {{{"_name", "AHCI"}}, {{"_items", "no list"}}, {}});
  profiler.set_tag_value("/SPParallelSCSIDataType/_items", Value());
  profiler.set_attribute("/SPParallelATADataType/_items", text_value("no list"));
  EXPECT_EQ(collected(collect_storage, profiler), tree_text(empty_snapshot()));
}

TEST(CollectStorage, RecognisesOpticalDrivesByTheirLackOfSmart) {
  const InventoryTree snapshot = collect_sata({{{"device_model", "A"}, {"smart_status", "Failing"}},
                                               {{"device_model", "B"}, {"smart_status", "Not Supported"}},
                                               {{"device_model", "C"}},
                                               {{"device_model", "D"}, {"smart_status", ""}},
                                               {{"device_model", "E"}, {"smart_status", 1}}});
  EXPECT_EQ(disks(snapshot), "HDD:1=A CD:1=B CD:2=C HDD:2=D CD:3=E ");
}

TEST(CollectStorage, WritesOnlyTheModelOfAnOpticalDrive) {
  InventoryTree profiler =
      profiler_with(kAta, {holder({{{"device_model", "DVD"}, {"device_serial", "S-1"}, {"size", "4 GB"}}})});
  EXPECT_EQ(collected(collect_storage, profiler),
            "+Snapshot=\n+Storage=\n+Physical-disks=\n*CD:1=\nmodel=DVD\n-\n-\n-\n");
}

TEST(CollectStorage, NumbersDisksAndDrivesThroughAllDataTypes) {
  InventoryTree profiler = profiler_with(kSata, {holder({kDisk, kDrive}), holder({kDrive, kDisk})});
  // Neither SMART nor its lack counts on the other two.
  add_item(profiler, kScsi, holder({holder({kDrive, kDisk}), holder({kDisk})}));
  add_item(profiler, kScsi, holder({holder({kDisk})}));
  add_item(profiler, kAta, holder({kDisk, kDrive}));
  EXPECT_EQ(disks(collect(profiler)),
            "HDD:1=DISK CD:1=DVD CD:2=DVD HDD:2=DISK HDD:3=DVD HDD:4=DISK HDD:5=DISK HDD:6=DISK "
            "CD:3=DISK CD:4=DVD ");
}

TEST(CollectStorage, SaysHowADiskIsPluggedIn) {
  InventoryTree profiler = profiler_with(kSata, {holder({kDisk})});
  add_item(profiler, kScsi, holder({holder({kDisk})}));
  EXPECT_EQ(list(collect(profiler), "Physical-disks", "interface"), "HDD:1=SATA HDD:2=SCSI ");
}

TEST(CollectStorage, MarksAHardDiskAsSuch) {
  const InventoryTree snapshot = collect_sata({kDisk});
  EXPECT_EQ(find_integer(disk(snapshot), "mediatype"), 3);
  EXPECT_EQ(disk(snapshot).find_attribute("mediatype")->find_annotation("type")->text, "media-type");
}

TEST(CollectStorage, LeavesOutSerialAndRevisionThatAreMissing) {
  const InventoryTree snapshot = collect_sata({kDisk});
  EXPECT_EQ(disk(snapshot).find_attribute("serial"), nullptr);
  EXPECT_EQ(disk(snapshot).find_attribute("fw-rev"), nullptr);
}

TEST(CollectStorage, KeepsTheNumberOfADriveWithoutModel) {
  EXPECT_EQ(disks(collect_sata({{{"_name", "DVD"}}, kDrive})), "CD:2=DVD ");
}

struct Size {
  int64_t gb;
  std::string base_value;
};

Size size_of(const Item& keys) {
  Item device = kDisk;
  device.insert(device.end(), keys.begin(), keys.end());
  const InventoryTree snapshot = collect_sata({device});
  return {find_integer(disk(snapshot), "size"),
          disk(snapshot).find_attribute("size")->find_annotation("base-value")->text};
}

TEST(CollectStorage, CutsASizeInBytesOff) {
  const Size size = size_of({{"size", "465,76 GB"}, {"size_in_bytes", int64_t{500107862016}}});
  EXPECT_EQ(size.gb, 500);
  EXPECT_EQ(size.base_value, "500107862016");
  EXPECT_EQ(size_of({{"size_in_bytes", int64_t{999999999}}}).gb, 0);
}

TEST(CollectStorage, RoundsASizeInText) {
  const Size size = size_of({{"size", "465,76 GB"}});
  EXPECT_EQ(size.gb, 500);
  EXPECT_EQ(size.base_value, "500106002432");
  // 536.98 GB of 10^9 bytes.
  EXPECT_EQ(size_of({{"size", "500.11 GB"}}).gb, 537);
}

TEST(CollectStorage, CountsAMissingOrUnreadableSizeAsZero) {
  for (const Item& keys : {Item{}, Item{{"size", ""}}, Item{{"size", 7}}, Item{{"size_in_bytes", "many"}}}) {
    const Size size = size_of(keys);
    EXPECT_EQ(size.gb, 0);
    EXPECT_EQ(size.base_value, "0");
  }
}

TEST(CollectStorage, CutsASizeThatFitsNoIntegerAtTheLargestOne) {
  EXPECT_EQ(size_of({{"size", "1e38 GB"}}).base_value, "9223372036854775807");
  EXPECT_EQ(size_of({{"size", "nan GB"}}).base_value, "0");
}

TEST(CollectStorage, CountsNoPartitionsOnADiskWithoutVolumes) {
  const InventoryTree snapshot = collect_sata({kDisk});
  ASSERT_NE(disk(snapshot).find_attribute("partitions"), nullptr);
  EXPECT_EQ(find_integer(disk(snapshot), "partitions"), 0);
}

TEST(CollectStorage, GivesAnUnnamedVolumeNoNumber) {
  const InventoryTree snapshot =
      collect_sata({disk_with_volumes({{{"_name", "A"}}, {{"size", "1 GB"}}, {{"_name", "B"}}})});
  EXPECT_STREQ(partition(snapshot, 1)->value()->text(), "A");
  EXPECT_STREQ(partition(snapshot, 2)->value()->text(), "B");
  EXPECT_EQ(partition(snapshot, 3), nullptr);
  EXPECT_EQ(find_integer(disk(snapshot), "partitions"), 2);
}

TEST(CollectStorage, NumbersPartitionsThroughAllDisks) {
  InventoryTree profiler =
      profiler_with(kSata, {holder({disk_with_volumes({{{"_name", "A"}}, {{"_name", "B"}}})})});
  add_item(profiler, kScsi, holder({holder({disk_with_volumes({{{"_name", "C"}}})})}));
  const InventoryTree snapshot = collect(profiler);
  EXPECT_STREQ(partition(snapshot, 3)->value()->text(), "C");
  EXPECT_EQ(find_integer(*find(snapshot, "Physical-disks", "HDD:2"), "partitions"), 1);
}

TEST(CollectStorage, MarksEncryptedVolumes) {
  const InventoryTree snapshot = collect_sata({disk_with_volumes(
      {{{"_name", "A"}, {"iocontent", "Apple_CoreStorage"}}, {{"_name", "B"}, {"iocontent", "Apple_HFS"}}})});
  ASSERT_EQ(partition(snapshot, 1)->annotations().size(), 1u);
  EXPECT_EQ(partition(snapshot, 1)->annotations()[0].key, "kind");
  EXPECT_EQ(partition(snapshot, 1)->annotations()[0].text, "encrypted");
  EXPECT_TRUE(partition(snapshot, 2)->annotations().empty());
}

TEST(CollectStorage, WritesTheUsedShareWheneverFreeSpaceIsKnown) {
  const InventoryTree snapshot =
      collect_sata({disk_with_volumes({{{"_name", "A"}, {"size", "2 GB"}, {"free_space", "1 GB"}},
                                       {{"_name", "B"}, {"size", "2 GB"}},
                                       {{"_name", "C"}, {"free_space", "1 GB"}}})});
  EXPECT_EQ(find_integer(*partition(snapshot, 1), "used%"), 50);
  EXPECT_EQ(partition(snapshot, 2)->find_attribute("used%"), nullptr);
  ASSERT_NE(partition(snapshot, 3)->find_attribute("used%"), nullptr);
  EXPECT_EQ(find_integer(*partition(snapshot, 3), "used%"), 0);
}

TEST(CollectStorage, LeavesTheDeviceNameOfAVolumeOut) {
  const InventoryTree snapshot =
      collect_sata({disk_with_volumes({{{"_name", "A"}, {"bsd_name", "disk0s1"}}})});
  EXPECT_TRUE(partition(snapshot, 1)->attributes().empty());
}

TEST(CollectStorage, BearsOtherKindsWhereListsAndTextsAreExpected) {
  const Item odd = {{"device_model/deep", "x"}, {"smart_status", "Verified"}, {"volumes", "no list"},
                    {"device_serial", 12},      {"device_revision/x/y", "z"}, {"size/x", "1 GB"}};
  const InventoryTree snapshot = collect_sata({odd, disk_with_volumes({{{"_name", 5}}})});
  EXPECT_EQ(find_integer(disk(snapshot), "serial"), 12);
  EXPECT_EQ(find_integer(disk(snapshot), "partitions"), 0);
  EXPECT_EQ(partition(snapshot, 1)->value()->int64(), 5);
}

// Whoever adds to a disk or a partition finds it by its number.
TEST(HardDisks, AreListedAsTheyAreNumbered) {
  InventoryTree profiler = profiler_with(kSata, {holder({kDrive, kDisk})});
  add_item(profiler, kScsi, holder({holder({{{"device_model", "SCSI DISK"}}})}));
  add_item(profiler, kAta, holder({kDisk}));
  const std::vector<const Tag*> listed = hard_disks(profiler);
  ASSERT_EQ(listed.size(), 2u);
  const InventoryTree snapshot = collect(profiler);
  for (size_t i = 0; i < listed.size(); ++i) {
    const Tag* element = find(snapshot, "Physical-disks", "HDD:" + std::to_string(i + 1));
    EXPECT_STREQ(find_text(*element, "model"), find_text(*listed[i], "device_model"));
  }
}

TEST(NamedVolumes, AreListedAsTheirPartitionsAre) {
  InventoryTree profiler = profiler_with(
      kSata, {holder({disk_with_volumes({{{"_name", "A"}}, {{"bsd_name", "disk0s2"}}, {{"_name", "B"}}})})});
  const std::vector<const Tag*> volumes = named_volumes(*hard_disks(profiler).front());
  ASSERT_EQ(volumes.size(), 2u);
  EXPECT_STREQ(find_text(*volumes[0], "_name"), "A");
  EXPECT_STREQ(find_text(*volumes[1], "_name"), "B");
}

}  // namespace
