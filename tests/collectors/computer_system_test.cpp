#include "collectors/computer_system.h"

#include <gtest/gtest.h>

#include "tests/collectors/tool_helpers.h"
#include "tests/collectors/tree_helpers.h"

namespace {

constexpr char kHardware[] = "SPHardwareDataType";
constexpr char kMemory[] = "SPMemoryDataType";

std::string system_of(const char* data_type, std::initializer_list<Item> items) {
  InventoryTree profiler = profiler_with(data_type, items);
  return collected(collect_system, profiler);
}

std::string computer(const std::string& lines) { return "+Snapshot=\n+System=\n" + lines + "-\n-\n"; }

// The snapshot with slots of these numbers, in the order in which they were first written.
std::string slots(std::initializer_list<const char*> numbers, const std::string& lines) {
  std::string list;
  for (const char* number : numbers) list += std::string("mem-slot:") + number + "=\n~complex=\n";
  return computer("+Mem-slots=\n" + list + lines + "-\n");
}

const Item kTwoGb = {{"dimm_status", "ok"}, {"dimm_size", "2 GB"}};

TEST(ComputerSystem, WritesComputerAndChassisWithoutAskingIoreg) {
  FakeTools tools;
  tools.write("ioreg", "touch '" + tools.file("asked") + "'");
  EXPECT_EQ(system_of(kHardware, {{{"machine_model", "iMac11,2"},
                                   {"platform_UUID", "00000000-0000-1000-8000-001EC20A112B"},
                                   {"serial_number", "W80000000AA"}}}),
            computer("*Computer-system=\n"
                     "model=iMac11,2\n"
                     "manuf=Apple Inc.\n"
                     "uuid=00000000-0000-1000-8000-001EC20A112B\n"
                     "*Chassis=\n"
                     "manuf=Apple Inc.\n"
                     "serial=W80000000AA\n"));
  EXPECT_FALSE(std::filesystem::exists(tools.file("asked")));
}

TEST(ComputerSystem, TakesTheUuidFromIoregWhenTheProfilerHasNone) {
  FakeTools tools;
  write_printing_tool(tools, "ioreg",
                      "+-o MacBook1,1  <class IOPlatformExpertDevice>\n"
                      "      \"IOPlatformUUID\" = \"00000000-0000-1000-8000-0016CB123456\"\n"
                      "      \"model\" = <\"MacBook1,1\">\n");
  EXPECT_EQ(system_of(kHardware, {{{"machine_model", "MacBook1,1"}, {"serial_number", "4H0000000AA"}}}),
            computer("*Computer-system=\n"
                     "model=MacBook1,1\n"
                     "manuf=Apple Inc.\n"
                     "uuid=00000000-0000-1000-8000-0016CB123456\n"
                     "*Chassis=\n"
                     "manuf=Apple Inc.\n"
                     "serial=4H0000000AA\n"));
}

TEST(ComputerSystem, CopiesWhateverTheProfilerReportsAsUuid) {
  const auto uuid = [](const Key& key) { return system_of(kHardware, {{{"machine_model", "m"}, key}}); };
  FakeTools tools;
  write_printing_tool(tools, "ioreg", "\"IOPlatformUUID\" = \"another\"\n");
  EXPECT_EQ(uuid({"platform_UUID", ""}),
            computer("*Computer-system=\nmodel=m\nmanuf=Apple Inc.\nuuid=\n*Chassis=\nmanuf=Apple Inc.\n"));
  EXPECT_EQ(uuid({"platform_UUID", 7}),
            computer("*Computer-system=\nmodel=m\nmanuf=Apple Inc.\nuuid=7\n*Chassis=\nmanuf=Apple Inc.\n"));
}

TEST(ComputerSystem, WritesAnEmptyUuidWhenIoregPrintsNothing) {
  FakeTools tools;
  tools.write("ioreg", "exit 1");
  EXPECT_EQ(system_of(kHardware, {{}}), computer("*Computer-system=\n"
                                                 "manuf=Apple Inc.\n"
                                                 "uuid=\n"
                                                 "*Chassis=\n"
                                                 "manuf=Apple Inc.\n"));
}

TEST(ComputerSystem, ReadsOnlyTheFirstHardwareItem) {
  EXPECT_EQ(system_of(kHardware, {{{"machine_model", "first"}, {"platform_UUID", "u"}, {"serial_number", 1}},
                                  {{"machine_model", "second"}, {"platform_UUID", "v"}}}),
            computer("*Computer-system=\n"
                     "model=first\n"
                     "manuf=Apple Inc.\n"
                     "uuid=u\n"
                     "*Chassis=\n"
                     "manuf=Apple Inc.\n"
                     "serial=1\n"));
}

TEST(ComputerSystem, WritesNothingWithoutItems) {
  EXPECT_EQ(system_of(kHardware, {}), "*Snapshot=\n");
  EXPECT_EQ(system_of(kMemory, {}), "*Snapshot=\n");
  InventoryTree profiler = empty_profiler();
  EXPECT_EQ(collected(collect_system, profiler), "*Snapshot=\n");
}

TEST(MemorySlots, ReportsTheCapacityOfUsedSlotsOnly) {
  EXPECT_EQ(system_of(kMemory, {kTwoGb, {{"dimm_status", "empty"}, {"dimm_size", "empty"}}}),
            slots({"1", "2"},
                  "*mem-slot:1=\n"
                  "used=1\n"
                  "capacity=2048\n"
                  "~base-value=2147483648\n"
                  "*mem-slot:2=\n"
                  "used=0\n"));
}

TEST(MemorySlots, CutsFractionsOff) {
  EXPECT_EQ(system_of(kMemory, {{{"dimm_status", "ok"}, {"dimm_size", "512,9 MB"}}}),
            slots({"1"},
                  "*mem-slot:1=\n"
                  "used=1\n"
                  "capacity=512\n"
                  "~base-value=537814656\n"));
}

TEST(MemorySlots, BeginsAgainInEveryGroup) {
  EXPECT_EQ(system_of(kMemory, {{{"_items/item0/dimm_status", "ok"},
                                 {"_items/item0/dimm_size", "1 GB"},
                                 {"_items/item1/dimm_status", "ok"},
                                 {"_items/item1/dimm_size", "1 GB"}},
                                {{"_items/item0/dimm_status", "ok"},
                                 {"_items/item0/dimm_size", "4 GB"},
                                 {"_items/item1/dimm_status", "empty"}}}),
            slots({"1", "2"},
                  "*mem-slot:1=\n"
                  "used=1\n"
                  "capacity=4096\n"
                  // An annotation stays as it was first attached.
                  "~base-value=1073741824\n"
                  "*mem-slot:2=\n"
                  "used=0\n"
                  "capacity=1024\n"
                  "~base-value=1073741824\n"));
}

TEST(MemorySlots, NumbersAnUngroupedSlotByItsPositionAmongTheGroups) {
  EXPECT_EQ(system_of(kMemory, {{{"_items/item0/dimm_status", "empty"}},
                                {{"dimm_status", "empty"}},
                                {{"_items/item0/dimm_status", "ok"}, {"_items/item0/dimm_size", "2 GB"}}}),
            slots({"1", "2"},
                  "*mem-slot:1=\n"
                  "used=1\n"
                  "capacity=2048\n"
                  "~base-value=2147483648\n"
                  "*mem-slot:2=\n"
                  "used=0\n"));
}

TEST(MemorySlots, KeepsSlotsApartThatComeInDescendingOrder) {
  InventoryTree profiler = profiler_with(kMemory, {{{"_items/item0", "no slot"}},
                                                   {{"dimm_status", "empty"}},
                                                   {{"_items/item0/dimm_status", "empty"}},
                                                   {{"_items/item0/dimm_status", "ok"}}});
  EXPECT_EQ(collected(collect_system, profiler), slots({"2", "1"},
                                                       "*mem-slot:2=\n"
                                                       "used=0\n"
                                                       "*mem-slot:1=\n"
                                                       "used=1\n"));
}

TEST(MemorySlots, LosesOnlyWhatCannotBeRead) {
  EXPECT_EQ(system_of(kMemory, {{{"dimm_status", "ok"}},
                                {{"dimm_status", "ok"}, {"dimm_size", 2048}},
                                {{"dimm_status", "ok"}, {"dimm_size", "plenty"}},
                                {{"dimm_status", 1}, {"dimm_size", "2 GB"}}}),
            slots({"1", "2", "3", "4"},
                  "*mem-slot:1=\n"
                  "used=1\n"
                  "*mem-slot:2=\n"
                  "used=1\n"
                  "*mem-slot:3=\n"
                  "used=1\n"
                  "capacity=0\n"
                  "~base-value=0\n"
                  "*mem-slot:4=\n"
                  "used=0\n"));
}

TEST(MemorySlots, WritesNothingForAnEmptyGroup) {
  InventoryTree profiler = profiler_with(kMemory, {{{"_name", "global"}}});
  profiler.set_attribute("/SPMemoryDataType/_items/item0/_items/item0", text_value("no slot"));
  EXPECT_EQ(collected(collect_system, profiler), "*Snapshot=\n");
}

}  // namespace
