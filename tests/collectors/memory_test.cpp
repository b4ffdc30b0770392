#include "collectors/memory.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

std::string memory_of(std::initializer_list<Item> items) {
  InventoryTree profiler = profiler_with("SPMemoryDataType", items);
  return collected(collect_memory, profiler);
}

std::string memory_text(const std::string& lines) { return "+Snapshot=\n+Memory=\n" + lines + "-\n-\n"; }

constexpr char kNothing[] = "*Snapshot=\n";

const Item kModule = {{"_name", "DIMM0/BANK 0"},  {"dimm_manufacturer", "0x80AD"}, {"dimm_size", "2 GB"},
                      {"dimm_speed", "1067 MHz"}, {"dimm_status", "ok"},           {"dimm_type", "DDR3"}};
constexpr char kModuleLines[] =
    "used=1\nmanuf=0x80AD\ncapacity=2048\nmem-type=DDR3\nspeed=1067\nbank-label=DIMM0/BANK 0\n";

// The items as the slots of one bank group.
Item bank_group(std::initializer_list<Item> slots) {
  Item group = {{"_name", "Memory Slots"}};
  int number = 0;
  for (const Item& slot : slots) {
    const std::string path = "_items/item" + std::to_string(number++) + "/";
    for (const Key& key : slot) {
      group.push_back(key);
      group.back().name = path + key.name;
    }
  }
  return group;
}

TEST(Memory, WritesTheModuleOfALoneSlot) {
  EXPECT_EQ(memory_text(std::string("*Memory-slot:1=\n") + kModuleLines), memory_of({kModule}));
}

TEST(Memory, WritesOnlyTheUseOfAnEmptySlot) {
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=0\n"),
            memory_of({{{"_name", "DIMM1"}, {"dimm_status", "empty"}, {"dimm_size", "empty"}}}));
  // Only the word "ok" is one.
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=0\n"), memory_of({{{"dimm_status", "OK"}}}));
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=0\n"), memory_of({{{"_name", "DIMM1"}}}));
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=0\n"), memory_of({{}}));
}

TEST(Memory, NumbersSlotsThroughGroupsAndLoneSlots) {
  EXPECT_EQ(memory_text(std::string("*Memory-slot:1=\n") + kModuleLines +
                        "*Memory-slot:2=\nused=0\n*Memory-slot:3=\n" + kModuleLines),
            memory_of({bank_group({kModule, {{"dimm_status", "empty"}}}), kModule}));
}

TEST(Memory, NumbersSlotsThroughALoneSlotAndSeveralGroups) {
  const Item empty = {{"dimm_status", "empty"}};
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=0\n*Memory-slot:2=\nused=0\n*Memory-slot:3=\nused=0\n"
                        "*Memory-slot:4=\nused=0\n"),
            memory_of({empty, bank_group({empty, empty}), bank_group({empty})}));
}

TEST(Memory, PassesOverEmptyEntriesOfAGroup) {
  InventoryTree profiler = profiler_with("SPMemoryDataType", {bank_group({kModule})});
  profiler.set_tag_value("/SPMemoryDataType/_items/item0/_items/item1", Value());
  profiler.set_attribute("/SPMemoryDataType/_items/item0/_items/item2/dimm_status", text_value("empty"));
  EXPECT_EQ(memory_text(std::string("*Memory-slot:1=\n") + kModuleLines + "*Memory-slot:2=\nused=0\n"),
            collected(collect_memory, profiler));
}

TEST(Memory, GivesALoneSlotAnEmptyMakerWhenNoneIsReported) {
  const Item module = {{"dimm_status", "ok"}, {"dimm_type", "DDR2 SDRAM"}};
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmanuf=\nmem-type=DDR2 SDRAM\n"), memory_of({module}));
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmem-type=DDR2 SDRAM\n"), memory_of({bank_group({module})}));
}

TEST(Memory, CutsCapacitiesDownToMegabytes) {
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmanuf=\ncapacity=1536\n"),
            memory_of({{{"dimm_status", "ok"}, {"dimm_size", "1,5 GB"}}}));
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmanuf=\ncapacity=0\n"),
            memory_of({{{"dimm_status", "ok"}, {"dimm_size", "1000 KB"}}}));
}

TEST(Memory, BringsTextsIntoOneLine) {
  EXPECT_EQ(
      memory_text("*Memory-slot:1=\nused=1\nmanuf=a\rb\nmem-type=7\nbank-label=x\n"),
      memory_of(
          {{{"dimm_status", "ok"}, {"dimm_manufacturer", "a\nb"}, {"dimm_type", 7}, {"_name", "  x "}}}));
}

TEST(Memory, KeepsASpeedThatIsNotANumber) {
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmanuf=\nspeed=not\n"),
            memory_of({{{"dimm_status", "ok"}, {"dimm_speed", "not specified"}}}));
}

TEST(Memory, WritesASpeedAsText) {
  InventoryTree profiler = profiler_with("SPMemoryDataType", {kModule});
  InventoryTree snapshot = empty_snapshot();
  collect_memory(snapshot, profiler);
  const Tag* slot = snapshot.top().find_child("Memory")->find_child("Memory-slot:1");
  EXPECT_EQ(slot->find_attribute("speed")->value().kind(), Value::Kind::text);
}

TEST(Memory, KeepsASpeedWithoutUnitWhole) {
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmanuf=\nspeed=1067\n"),
            memory_of({{{"dimm_status", "ok"}, {"dimm_speed", "1067"}}}));
}

TEST(Memory, LeavesOutOnlyTheValuesOfTheWrongKind) {
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=1\nmanuf=\nbank-label=DIMM0\n*Memory-slot:2=\nused=0\n"),
            memory_of({{{"dimm_status", "ok"},
                        {"dimm_manufacturer/item0", "0x80AD"},
                        {"dimm_size", 2},
                        {"dimm_speed", 1067},
                        {"dimm_type/item0", "DDR3"},
                        {"_name", "DIMM0"}},
                       {{"dimm_status", 1}}}));
}

TEST(Memory, WritesThePhysicalMemoryOfTheFirstHardwareItem) {
  InventoryTree profiler =
      profiler_with("SPHardwareDataType", {{{"physical_memory", "4 GB"}}, {{"physical_memory", "8 GB"}}});
  EXPECT_EQ(memory_text("*General-info=\nphysical-memory=4096\n"), collected(collect_memory, profiler));
}

TEST(Memory, WritesThePhysicalMemoryAfterTheSlots) {
  InventoryTree profiler = profiler_with("SPHardwareDataType", {{{"physical_memory", "512 MB"}}});
  add_item(profiler, "SPMemoryDataType", {{"dimm_status", "empty"}});
  EXPECT_EQ(memory_text("*Memory-slot:1=\nused=0\n*General-info=\nphysical-memory=512\n"),
            collected(collect_memory, profiler));
}

TEST(Memory, WritesNothingWithoutItsDataTypes) {
  InventoryTree empty = empty_profiler();
  EXPECT_EQ(collected(collect_memory, empty), kNothing);
  EXPECT_EQ(memory_of({}), kNothing);
  for (const Item& hardware :
       {Item{}, Item{{"physical_memory", 4}}, Item{{"physical_memory/item0", "4 GB"}}}) {
    InventoryTree profiler = profiler_with("SPHardwareDataType", {hardware});
    EXPECT_EQ(collected(collect_memory, profiler), kNothing);
  }
}

}  // namespace
