#include "collectors/usb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "collectors/fields.h"
#include "collectors/storage.h"
#include "tests/collectors/item_lists.h"
#include "tests/collectors/tool_helpers.h"

namespace {

using testing::EndsWith;
using testing::StartsWith;

constexpr char kUsb[] = "SPUSBDataType";

// A bus or a hub.
Item hub(std::initializer_list<Item> entries) { return holding("_items", entries, {{"_name", "Hub"}}); }

Item device(const char* name) { return {{"_name", name}}; }
Item stick(const char* name) { return {{"_name", name}, {"removable_media", "yes"}}; }
Item stick_with_volumes(std::initializer_list<Item> volumes) {
  return holding("volumes", volumes, stick("Stick"));
}

InventoryTree collect(std::initializer_list<Item> entries) {
  InventoryTree profiler = profiler_with(kUsb, {hub(entries)});
  InventoryTree snapshot = empty_snapshot();
  collect_usb(snapshot, profiler);
  return snapshot;
}

const Tag* find(const InventoryTree& snapshot, std::initializer_list<const char*> path) {
  const Tag* tag = &snapshot.top();
  for (const char* name : path) tag = tag ? tag->find_child(name) : nullptr;
  return tag;
}

// The elements of a list with their values: "Device:1=Mouse Device:2=Keyboard ".
std::string elements(const Tag* list) {
  std::string text;
  if (!list) return text;
  for (const auto& element : list->children()) {
    const char* value = element->value() ? element->value()->text() : nullptr;
    text += element->name() + "=" + (value ? value : "(none)") + " ";
  }
  return text;
}
std::string devices(const InventoryTree& snapshot) {
  return elements(find(snapshot, {"Peripherals", "USB"}));
}
std::string disks(const InventoryTree& snapshot) {
  return elements(find(snapshot, {"Storage", "Physical-disks"}));
}
std::string partitions(const InventoryTree& snapshot) {
  return elements(find(snapshot, {"Storage", "Logical-disks"}));
}

// One attribute of the first device, or removable disk, as its text; "(none)" when it is missing or not a
// text.
std::string fact(const InventoryTree& snapshot, std::initializer_list<const char*> path, const char* name) {
  const Tag* element = find(snapshot, path);
  const char* text = element ? find_text(*element, name) : nullptr;
  return text ? text : "(none)";
}
std::string device_fact(const char* name, const Item& entry) {
  return fact(collect({entry}), {"Peripherals", "USB", "Device:1"}, name);
}
std::string disk_fact(const char* name, Item keys) {
  keys.push_back({"removable_media", "yes"});
  return fact(collect({keys}), {"Storage", "Physical-disks", "Removable:1"}, name);
}

TEST(CollectUsb, WritesNothingWithoutTheDataType) {
  InventoryTree profiler = empty_profiler();
  EXPECT_EQ(collected(collect_usb, profiler), tree_text(empty_snapshot()));
}

TEST(CollectUsb, WritesNothingForEmptyBuses) {
  InventoryTree profiler = profiler_with(kUsb, {{{"_name", "Bus"}}, {{"_items", "no list"}}});
  EXPECT_EQ(collected(collect_usb, profiler), tree_text(empty_snapshot()));
}

TEST(CollectUsb, WritesADeviceInTheOrderOfItsKeys) {
  const Item mouse = {{"_name", "Mouse"},
                      {"a_product_id", "0x0304"},
                      {"b_vendor_id", "apple_vendor_id"},
                      {"c_bcd_device", "1.10"},
                      {"d_serial_num", "S-1"},
                      {"e_device_speed", "low_speed"},
                      {"f_manufacturer", "Mitsumi"},
                      {"g_location_id", "0x1a110000"},
                      {"h_bus_power", "500"},
                      {"j_bus_power_used", "100"}};
  InventoryTree profiler = profiler_with(kUsb, {hub({mouse})});
  EXPECT_EQ(collected(collect_usb, profiler), R"(+Snapshot=
+Peripherals=
+USB=
*Device:1=Mouse
product-id=0x0304
vendor-id=apple_vendor_id
bcd-device=1.10
serial-number=S-1
device-speed=1.5
manuf=Mitsumi
bus-power=500
bus-power-used=100
-
-
-
)");
}

TEST(CollectUsb, KnowsKeysWithAndWithoutPrefix) {
  EXPECT_EQ(device_fact("serial-number", {{"serial_num", "S"}}), "S");
  EXPECT_EQ(device_fact("serial-number", {{"d_serial_num", "S"}}), "S");
  EXPECT_EQ(device_fact("serial-number", {{"__serial_num", "S"}}), "S");
}

TEST(CollectUsb, DropsOnePrefixOnly) {
  EXPECT_EQ(device_fact("serial-number", {{"a_d_serial_num", "S"}}), "(none)");
  EXPECT_EQ(device_fact("serial-number", {{"ab_serial_num", "S"}}), "(none)");
  EXPECT_EQ(device_fact("serial-number", {{"_serial_num", "S"}}), "(none)");
}

TEST(CollectUsb, LetsTheLaterOfTwoKeysCount) {
  EXPECT_EQ(device_fact("serial-number", {{"b_serial_num", "1"}, {"a_serial_num", "2"}}), "2");
}

TEST(CollectUsb, BearsKeysTooShortForAPrefix) {
  EXPECT_EQ(devices(collect({{{"_name", "Mouse"}, {"a", "x"}, {"a_", "x"}, {"_", "x"}}})), "Device:1=Mouse ");
}

TEST(CollectUsb, CodesTheSpeedOfADevice) {
  EXPECT_EQ(device_fact("device-speed", {{"device_speed", "low_speed"}}), "1.5");
  EXPECT_EQ(device_fact("device-speed", {{"device_speed", "full_speed"}}), "1");
  EXPECT_EQ(device_fact("device-speed", {{"device_speed", "high_speed"}}), "480");
}

TEST(CollectUsb, LeavesOutAnUnknownSpeedOfADevice) {
  EXPECT_EQ(device_fact("device-speed", {{"device_speed", "super_speed"}}), "(none)");
  EXPECT_EQ(device_fact("device-speed", {{"device_speed", 5}}), "(none)");
}

TEST(CollectUsb, CodesTheSpeedOfARemovableDiskInItsOwnWay) {
  EXPECT_EQ(disk_fact("device-speed", {{"device_speed", "low_speed"}}), "0");
  EXPECT_EQ(disk_fact("device-speed", {{"device_speed", "full_speed"}}), "1");
  EXPECT_EQ(disk_fact("device-speed", {{"device_speed", "high_speed"}}), "2");
  EXPECT_EQ(disk_fact("device-speed", {{"device_speed", "super_speed"}}), "2");
  EXPECT_EQ(disk_fact("device-speed", {{"device_speed", 5}}), "(none)");
  EXPECT_EQ(disk_fact("device-speed", {}), "(none)");
}

TEST(CollectUsb, ReplacesAHubByItsDevices) {
  EXPECT_EQ(devices(collect({device("A"), hub({device("B"), hub({device("C")}), device("D")}), device("E")})),
            "Device:1=A Device:2=B Device:3=C Device:4=D Device:5=E ");
}

TEST(CollectUsb, NumbersDevicesThroughAllBuses) {
  InventoryTree profiler = profiler_with(kUsb, {hub({device("A")}), hub({device("B")})});
  InventoryTree snapshot = empty_snapshot();
  collect_usb(snapshot, profiler);
  EXPECT_EQ(devices(snapshot), "Device:1=A Device:2=B ");
}

TEST(CollectUsb, GivesARemovableDiskNoDeviceNumber) {
  const InventoryTree snapshot = collect({device("A"), stick("Stick"), device("B")});
  EXPECT_EQ(devices(snapshot), "Device:1=A Device:2=B ");
  EXPECT_EQ(disks(snapshot), "Removable:1=Stick ");
}

TEST(CollectUsb, CodesTheMediaOfARemovableDiskAsText) { EXPECT_EQ(disk_fact("media-type", {}), "2"); }

TEST(CollectUsb, DoesNotLookBelowARemovableDisk) {
  EXPECT_EQ(devices(collect({holding("_items", {device("A")}, stick("Stick"))})), "");
}

TEST(CollectUsb, TreatsADiskWithoutRemovableMediaAsADevice) {
  EXPECT_EQ(devices(collect({{{"_name", "Disk"}, {"removable_media", "no"}}})), "Device:1=Disk ");
  EXPECT_EQ(devices(collect({{{"_name", "Disk"}, {"removable_media", 1}}})), "Device:1=Disk ");
  // The key has no prefix.
  EXPECT_EQ(devices(collect({{{"_name", "Disk"}, {"a_removable_media", "yes"}}})), "Device:1=Disk ");
}

TEST(CollectUsb, WritesADeviceWithoutNameAsAnElementWithoutValue) {
  EXPECT_EQ(devices(collect({{{"serial_num", "S"}}})), "Device:1=(none) ");
}

TEST(CollectUsb, KeepsTheNumbersOfFixedDisks) {
  InventoryTree profiler = profiler_with(
      "SPSerialATADataType",
      {holding("_items", {holding("volumes", {{{"_name", "HD"}}}, {{"smart_status", "Verified"}})})});
  add_item(profiler, kUsb, hub({stick_with_volumes({{{"_name", "A"}, {"free_space", "1 GB"}}}), stick("B")}));
  InventoryTree snapshot = empty_snapshot();
  collect_storage(snapshot, profiler);
  collect_usb(snapshot, profiler);
  EXPECT_EQ(disks(snapshot), "HDD:1=(none) Removable:1=Stick Removable:2=B ");
  EXPECT_EQ(partitions(snapshot), "partition:1=HD partition:2=A ");
}

TEST(CollectUsb, FillsGapsBetweenTheNumbersInUse) {
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_tag_value("/Storage/Physical-disks/Removable:2", text_value("old"));
  InventoryTree profiler = profiler_with(kUsb, {hub({stick("A"), stick("B")})});
  collect_usb(snapshot, profiler);
  EXPECT_EQ(disks(snapshot), "Removable:2=old Removable:1=A Removable:3=B ");
}

TEST(CollectUsb, WritesARemovableDiskAndItsVolumesInOrder) {
  FakeTools tools;
  write_printing_tool(tools, "diskutil", "   Device / Media Name:      Lexar JumpDrive Media\n");
  const Item volume = {{"_name", "Windows USB"},
                       {"bsd_name", "disk1s1"},
                       {"file_system", "FAT32"},
                       {"free_space", "3,2 GB"},
                       {"mount_point", "/Volumes/Windows USB"},
                       {"size", "6,4 GB"}};
  const Item drive = holding("volumes", {volume},
                             {{"_name", "JumpDrive"},
                              {"a_product_id", "0xa202"},
                              {"b_vendor_id", "0x05dc"},
                              {"bsd_name", "disk1"},
                              {"c_bcd_device", "11.00"},
                              {"d_serial_num", "S-1"},
                              {"e_device_speed", "high_speed"},
                              {"f_manufacturer", "Lexar"},
                              {"h_bus_power", "500"},
                              {"j_bus_power_used", "200"},
                              {"removable_media", "yes"},
                              {"size", "7,34 GB"},
                              {"size_in_bytes", int64_t{7881293824}},
                              {"smart_status", "Not Supported"}});
  InventoryTree profiler = profiler_with(kUsb, {hub({drive})});
  EXPECT_EQ(collected(collect_usb, profiler), R"(+Snapshot=
+Storage=
+Physical-disks=
*Removable:1=JumpDrive
media-type=2
model=Lexar JumpDrive
bcd-device=11.00
serial=S-1
device-speed=2
manufacturer=Lexar
bus-power=500
bus-power-used=200
size=8
~base-value=7881293824
interface=USB
partitions=1
-
+Logical-disks=
*partition:1=Windows USB
file-sys=FAT32
bsd-name=disk1s1
mount-point=/Volumes/Windows USB
size=6.87
~base-value=6871947776
free=3.44
~base-value=3435973888
used%=50
~pos=3.44
~max=6.87
~val-units=GB
-
-
-
)");
}

TEST(CollectUsb, TakesTheSizeOfARemovableDiskFromItsText) {
  const InventoryTree snapshot = collect({{{"_name", "Stick"},
                                           {"removable_media", "yes"},
                                           {"size", "500.11 GB"},
                                           {"size_in_bytes", int64_t{1}}}});
  const Tag& disk = *find(snapshot, {"Storage", "Physical-disks", "Removable:1"});
  EXPECT_EQ(find_integer(disk, "size"), 537);
  EXPECT_EQ(disk.find_attribute("size")->find_annotation("base-value")->text, "1");
}

TEST(CollectUsb, GivesARemovableDiskABaseValueOnlyWhereTheProfilerCountsBytes) {
  const auto base_value = [](Item keys) -> std::string {
    keys.push_back({"removable_media", "yes"});
    const InventoryTree snapshot = collect({keys});
    const Tag& disk = *find(snapshot, {"Storage", "Physical-disks", "Removable:1"});
    const Attribute* size = disk.find_attribute("size");
    if (!size) return "(no size)";
    return size->annotations().empty() ? "(none)" : size->annotations()[0].text;
  };
  EXPECT_EQ(base_value({{"size", "1 GB"}}), "(none)");
  EXPECT_EQ(base_value({{"size", "1 GB"}, {"size_in_bytes", "many"}}), "0");
  EXPECT_EQ(base_value({{"size_in_bytes", int64_t{5}}}), "(no size)");
  EXPECT_EQ(base_value({{"size", 3}, {"size_in_bytes", int64_t{5}}}), "(no size)");
}

TEST(CollectUsb, CountsOnlyNamedVolumesWithFreeSpace) {
  const InventoryTree snapshot =
      collect({stick_with_volumes({{{"_name", "A"}, {"free_space", "1 GB"}},
                                   {{"_name", "not mounted"}, {"size", "1 GB"}},
                                   {{"free_space", "1 GB"}},
                                   {{"_name", "not mounted either"}, {"free_space_in_bytes", 5}},
                                   {{"_name", "B"}, {"free_space", "1 GB"}}})});
  EXPECT_EQ(partitions(snapshot), "partition:1=A partition:2=B ");
  EXPECT_EQ(find_integer(*find(snapshot, {"Storage", "Physical-disks", "Removable:1"}), "partitions"), 2);
}

TEST(CollectUsb, CountsPartitionsOnlyWhereThereIsAListOfVolumes) {
  const auto count = [](const Item& entry) {
    const InventoryTree snapshot = collect({entry});
    return find_value(*find(snapshot, {"Storage", "Physical-disks", "Removable:1"}), "partitions");
  };
  EXPECT_EQ(count(stick("Stick")), nullptr);
  Item with_text = stick("Stick");
  with_text.push_back({"volumes", "no list"});
  EXPECT_EQ(count(with_text), nullptr);
  const InventoryTree snapshot = collect({stick_with_volumes({{{"size", "1 GB"}}})});
  const Value* none = find_value(*find(snapshot, {"Storage", "Physical-disks", "Removable:1"}), "partitions");
  ASSERT_NE(none, nullptr);
  EXPECT_EQ(none->kind(), Value::Kind::int64);
  EXPECT_EQ(none->int64(), 0);
}

TEST(CollectUsb, WritesTheUsedShareWheneverTheSizeIsNotZero) {
  const InventoryTree snapshot =
      collect({stick_with_volumes({{{"_name", "A"}, {"size", "2 GB"}, {"free_space", "1 GB"}},
                                   {{"_name", "B"}, {"free_space", "1 GB"}},
                                   {{"_name", "C"}, {"size", "0 GB"}, {"free_space", "1 GB"}}})});
  const Tag& list = *find(snapshot, {"Storage", "Logical-disks"});
  EXPECT_EQ(find_integer(*list.child_at(0), "used%"), 50);
  EXPECT_EQ(find_value(*list.child_at(1), "used%"), nullptr);
  EXPECT_EQ(find_value(*list.child_at(2), "used%"), nullptr);
}

TEST(CollectUsb, DoesNotMarkVolumesOnUsbAsEncrypted) {
  const InventoryTree snapshot = collect(
      {stick_with_volumes({{{"_name", "A"}, {"free_space", "1 GB"}, {"iocontent", "Apple_CoreStorage"}}})});
  EXPECT_TRUE(find(snapshot, {"Storage", "Logical-disks", "partition:1"})->annotations().empty());
}

TEST(CollectUsb, AsksTheDiskUtilityAboutTheDevice) {
  FakeTools tools;
  tools.write("diskutil", keeping_arguments(tools));
  EXPECT_EQ(disk_fact("model", {{"x_bsd_name", "disk1.s/2_a-B"}}), "(none)");
  EXPECT_EQ(tools.read("arguments"), "<info></dev/disk1.s/2_a-B>");
}

TEST(CollectUsb, AsksTheDiskUtilityOnlyAboutPlainNames) {
  FakeTools tools;
  tools.write("diskutil", keeping_arguments(tools) + "echo 'Device / Media Name: X Media'");
  for (const char* name : {"", "disk1 disk2", "disk1;touch x", "$(touch x)", "`touch x`", "disk1&", "'disk1'",
                           "\"", "a\nb", "a\\b", "*", "~", "#", "disk\xC3\xA9", "a|b", ">x", "a\tb"}) {
    EXPECT_EQ(disk_fact("model", {{"bsd_name", name}}), "(none)") << name;
    EXPECT_EQ(tools.read("arguments"), "") << name;
  }
  EXPECT_EQ(disk_fact("model", {{"bsd_name", 7}}), "(none)");
  EXPECT_EQ(tools.read("arguments"), "");
}

TEST(CollectUsb, WritesNoModelWhenTheDiskUtilityFails) {
  FakeTools tools;
  tools.write("diskutil", "exit 1");
  EXPECT_EQ(disk_fact("model", {{"bsd_name", "disk1"}}), "(none)");
  tools.write("diskutil", "echo 'Could not find disk: disk1'");
  EXPECT_EQ(disk_fact("model", {{"bsd_name", "disk1"}}), "(none)");
}

// What a scan with this many sticks complains about.
std::string complaints_of(int sticks) {
  InventoryTree profiler = empty_profiler();
  for (int i = 1; i <= sticks; ++i) {
    Item entry = stick("Stick");
    entry.push_back({"bsd_name", ("disk" + std::to_string(i)).c_str()});
    add_item(profiler, kUsb, hub({entry}));
  }
  InventoryTree snapshot = empty_snapshot();
  testing::internal::CaptureStderr();
  collect_usb(snapshot, profiler);
  return testing::internal::GetCapturedStderr();
}

TEST(CollectUsb, CutsThePagesOfTheDiskUtilityAtTheirLimits) {
  const FakeTools tools;
  tools.write("diskutil", "exec head -c 1048577 /dev/zero");
  const std::string complaints = complaints_of(66);
  EXPECT_THAT(complaints, StartsWith("Output cut off after 1048576 bytes: diskutil info /dev/disk1\n"));
  EXPECT_THAT(complaints, EndsWith("Output cut off after 1048576 bytes: diskutil info /dev/disk64\n"
                                   "No longer run: diskutil info /dev/disk65\n"));
}

TEST(CollectUsb, AsksTheDiskUtilityAThousandTimesAtMost) {
  const FakeTools tools;
  tools.write("diskutil", "echo >> '" + tools.file("runs") + "'");
  EXPECT_EQ(complaints_of(1002), "No longer run: diskutil info /dev/disk1001\n");
  EXPECT_EQ(tools.read("runs").size(), 1000u);
}

TEST(CollectUsb, WritesABlankMediaNameAsAnEmptyModel) {
  FakeTools tools;
  write_printing_tool(tools, "diskutil", "   Device / Media Name:       Media\n");
  EXPECT_EQ(disk_fact("model", {{"bsd_name", "disk1"}}), "");
}

TEST(CollectUsb, WalksHubsAtAnyDepth) {
  auto entry = std::make_unique<Tag>("item0");
  entry->set_attribute("_name", text_value("Mouse"));
  for (int depth = 0; depth < 100000; ++depth) {
    auto list = std::make_unique<Tag>("_items");
    list->add_child(std::move(entry));
    entry = std::make_unique<Tag>("item0");
    entry->add_child(std::move(list));
  }
  InventoryTree snapshot = empty_snapshot();
  int counter = 0;
  collect_usb_device(snapshot, *entry, counter);
  EXPECT_EQ(counter, 1);
  EXPECT_EQ(devices(snapshot), "Device:1=Mouse ");
}

TEST(CollectUsbDevice, CountsOnFromTheGivenCounter) {
  InventoryTree profiler = profiler_with(kUsb, {device("A"), stick("B"), device("C")});
  const Tag& entries = *find_items(profiler, kUsb);
  InventoryTree snapshot = empty_snapshot();
  int counter = 4;
  for (const auto& entry : entries.children()) collect_usb_device(snapshot, *entry, counter);
  EXPECT_EQ(counter, 6);
  EXPECT_EQ(devices(snapshot), "Device:5=A Device:6=C ");
  EXPECT_EQ(disks(snapshot), "Removable:1=B ");
}

TEST(CollectUsb, CopesWithManyDisksAndVolumes) {
  constexpr int kMany = 50000;
  auto bus = std::make_unique<Tag>("item0");
  auto entries = std::make_unique<Tag>("_items");
  for (int index = 0; index < kMany; ++index) {
    auto entry = std::make_unique<Tag>("item" + std::to_string(index));
    entry->set_attribute("removable_media", text_value("yes"));
    entry->set_attribute("volumes/item0/_name", text_value("A"));
    entry->set_attribute("volumes/item0/free_space", text_value("1 GB"));
    entries->add_child(std::move(entry));
  }
  bus->add_child(std::move(entries));
  InventoryTree profiler = empty_profiler();
  profiler.set_tag_value("/SPUSBDataType/_items", Value());
  profiler.top().find_child(kUsb)->find_child("_items")->add_child(std::move(bus));
  InventoryTree snapshot = empty_snapshot();
  // As after a scan of fixed disks, so that the lists are not the collector's own.
  snapshot.set_tag_value("/Storage/Physical-disks/HDD:1", text_value("HD"));
  snapshot.set_tag_value("/Storage/Logical-disks/partition:1", text_value("HD"));
  collect_usb(snapshot, profiler);
  EXPECT_EQ(find(snapshot, {"Storage", "Physical-disks"})->children().back()->name(),
            "Removable:" + std::to_string(kMany));
  EXPECT_EQ(find(snapshot, {"Storage", "Logical-disks"})->children().back()->name(),
            "partition:" + std::to_string(kMany + 1));
}

TEST(CollectUsb, BearsOtherKindsWhereListsAndTextsAreExpected) {
  const Item odd = {{"_name/deep", "x"}, {"removable_media", "yes"}, {"volumes/item0", "x"},
                    {"size/x", "1 GB"},  {"device_speed/x", "y"},    {"serial_num", 12}};
  const InventoryTree snapshot = collect({odd, {{"_items", "no list"}, {"bus_power", 500}}});
  EXPECT_EQ(disks(snapshot), "Removable:1=(none) ");
  EXPECT_EQ(find_integer(*find(snapshot, {"Storage", "Physical-disks", "Removable:1"}), "serial"), 12);
  EXPECT_EQ(find_integer(*find(snapshot, {"Peripherals", "USB", "Device:1"}), "bus-power"), 500);
}

std::string media_name(const char* output) {
  const Text name = parse_media_name(output);
  return name ? name.get() : "(none)";
}

TEST(ParseMediaName, FindsTheNameBetweenLabelAndMarker) {
  EXPECT_EQ(media_name("   Device Identifier:        disk1\n"
                       "   Device / Media Name:      Lexar JumpDrive Media\n"
                       "\n   Volume Name:              \n"),
            "Lexar JumpDrive");
}

TEST(ParseMediaName, IsNullWithoutLabelOrMarker) {
  EXPECT_EQ(media_name(""), "(none)");
  EXPECT_EQ(media_name("Lexar JumpDrive Media\n"), "(none)");
  EXPECT_EQ(media_name("   Device / Media Name:      Untitled\n"), "(none)");
  EXPECT_EQ(media_name("   Device / Media Name:      Lexar JumpDrive Media"), "(none)");
  EXPECT_EQ(media_name("   Device / Media Name:"), "(none)");
}

TEST(ParseMediaName, IgnoresAMarkerBeforeTheLabel) {
  EXPECT_EQ(media_name("X Media\nDevice / Media Name: Y"), "(none)");
  EXPECT_EQ(media_name("X Media\nDevice / Media Name: Y Media\n"), "Y");
}

TEST(ParseMediaName, RunsToTheFirstMarkerAlsoOverLines) {
  EXPECT_EQ(media_name("Device / Media Name: A\n  Ejectable: Yes\nB Media\n"), "A\n  Ejectable: Yes\nB");
  EXPECT_EQ(media_name("Device / Media Name: A Media\nB Media\n"), "A");
}

TEST(ParseMediaName, KeepsBlanksInsideAndAtTheEnd) {
  EXPECT_EQ(media_name("Device / Media Name:   A  Media B  Media\n"), "A  Media B ");
}

TEST(ParseMediaName, SkipsNothingButBlanksBeforeTheName) {
  EXPECT_EQ(media_name("Device / Media Name:  \t A Media\n"), "\t A");
}

TEST(ParseMediaName, GivesAnEmptyTextForABlankName) {
  EXPECT_EQ(media_name("Device / Media Name: Media\n"), "");
  EXPECT_EQ(media_name("Device / Media Name:      Media\n"), "");
}

}  // namespace
