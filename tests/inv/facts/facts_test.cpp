#include "inv/facts/facts.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

struct Row {
  std::string path, name, value, unit, base_value;
  bool operator==(const Row& other) const {
    return path == other.path && name == other.name && value == other.value && unit == other.unit &&
           base_value == other.base_value;
  }
};
void PrintTo(const Row& row, std::ostream* stream) {
  *stream << row.path << "|" << row.name << "|" << row.value << "|" << row.unit << "|" << row.base_value;
}

std::vector<Row> facts_of(const inv::Inventory& inventory) {
  std::vector<Row> rows;
  inv::each_fact(inventory, [&](const inv::Fact& fact) {
    rows.push_back({std::string(fact.path), std::string(fact.name), std::string(fact.value),
                    std::string(fact.unit), std::string(fact.base_value)});
  });
  return rows;
}

std::string unit_at(const char* path) {
  InventoryTree tree(1, "Snapshot");
  tree.set_attribute(path, text_value("1"));
  const auto inventory = maker::open(maker::file_of_text(maker::text_of(tree)));
  for (const Row& row : facts_of(*inventory)) {
    if (row.path == path) return row.unit;
  }
  return "no fact";
}

TEST(Facts, HaveTheUnitsInWhichTheScannerCounts) {
  struct {
    const char* path;
    const char* unit;
  } const rows[] = {
      {"/Video/Monitors/Monitor:1/v-freq/min", "Hz"},
      {"/Video/Monitors/Monitor:1/h-freq/min", "kHz"},
      {"/Video/Monitors/Monitor:1/Video-Modes/v-mode:12/freq", "Hz"},
      {"/Video/Monitors/Monitor:1/max-visible-image-size/diagonal", "in"},
      {"/Video/Monitors/Monitor:1/max-visible-image-size/width", "cm"},
      {"/Memory/Memory-slot:3/capacity", "MB"},
      {"/Memory/Memory-slot:3/speed", "MHz"},
      {"/Processors/Processor:1/l3-cache-size", "KB"},
      {"/Storage/Physical-disks/HDD:1/size", "GB"},
      {"/Storage/Logical-disks/partition:10/used%", "%"},
      {"/Peripherals/USB/Device:1/bus-power", "mA"},
      {"/System/PowerManagement/disk-sleep-timer", "min"},
      {"/System/PowerManagement/Profile:1/disk-sleep-timer", "min"},
      {"/scan-time", "ms"},
      // The same names elsewhere count nothing.
      {"/Software/Soft:1/size", ""},
      {"/Memory/Memory-slot:3/min", ""},
  };
  for (const auto& row : rows) EXPECT_EQ(unit_at(row.path), row.unit) << row.path;
}

TEST(Facts, ComeInTreeOrderWithUnitsAndBaseValues) {
  const std::vector<Row> rows = facts_of(*maker::open(maker::file()));
  ASSERT_EQ(rows.size(), 26u);
  EXPECT_EQ(rows[0], (Row{"/timestamp", "timestamp", "20120118153045.000000+120", "", ""}));
  EXPECT_EQ(rows[1], (Row{"/scan-time", "scan-time", "12000", "ms", ""}));
  EXPECT_EQ(rows[8], (Row{"/Processors/Processor:1", "Processor:1", "Intel Core i7", "", ""}));
  EXPECT_EQ(rows[10], (Row{"/Processors/Processor:1/l2-cache-size", "l2-cache-size", "1024", "KB", ""}));
  EXPECT_EQ(rows[12],
            (Row{"/Storage/Logical-disks/partition:1/size", "size", "499.50", "GB", "499500000000"}));
  EXPECT_EQ(rows[25], (Row{"AssetInfo/control/os-name", "os-name", "Mac OS X v10.6 (Snow Leopard)", "", ""}));
}

TEST(Facts, LeaveOutTagsWithoutValueAndMarkersOfCompoundFields) {
  int environment = 0;
  for (const Row& row : facts_of(*maker::open(maker::file()))) {
    EXPECT_NE(row.path, "/Software");
    if (row.path == "/Environment/env-var:PATH") {
      ++environment;
      EXPECT_EQ(row.value, "PATH");
    }
  }
  EXPECT_EQ(environment, 1);
}

TEST(Facts, KeepEmptyAttributes) {
  const std::vector<Row> rows = facts_of(*maker::open(maker::file()));
  EXPECT_NE(std::find(rows.begin(), rows.end(), Row{"/Software/Soft:2/version", "version", "", "", ""}),
            rows.end());
}

TEST(Facts, AStatedUnitIsPreferred) {
  const auto inventory =
      maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n*Video-adapter:1=Card\nram=256\n~units="
                                      "MB\n*HDD:1=\nsize=1\n~units=TB\n-\n"));
  const std::vector<Row> rows = facts_of(*inventory);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[1].unit, "MB");
  EXPECT_EQ(rows[2].unit, "TB");
}

// "kind index element section" of each fact.
std::vector<std::string> places_in(const inv::Inventory& inventory) {
  std::vector<std::string> places;
  inv::each_fact(inventory, [&](const inv::Fact& fact) {
    places.push_back(std::string(fact.kind) + " [" + std::string(fact.index) + "] " +
                     std::string(fact.element) + " " + std::string(fact.section));
  });
  return places;
}

TEST(Facts, HaveAKindAndAnIndexThatMakeTheirPath) {
  const auto inventory =
      maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=top\ntimestamp=x\n+Video=\n+Monitor:2="
                                      "A\nid=1\n+Modes=\n*v-mode:3=B\nfreq=60\n"
                                      "-\n-\n-\n*usr-acc:jane:doe=J\nenv:PATH=/\n-\n"));
  EXPECT_EQ(places_in(*inventory),
            (std::vector<std::string>{
                "/ [] / snapshot", "/timestamp [] / snapshot", "/Video/Monitor [2] /Video/Monitor:2 snapshot",
                "/Video/Monitor/id [2] /Video/Monitor:2 snapshot",
                "/Video/Monitor/Modes/v-mode [2/3] /Video/Monitor:2/Modes/v-mode:3 snapshot",
                "/Video/Monitor/Modes/v-mode/freq [2/3] /Video/Monitor:2/Modes/v-mode:3 snapshot",
                "/usr-acc [jane:doe] /usr-acc:jane:doe snapshot",
                "/usr-acc/env [jane:doe/PATH] /usr-acc:jane:doe snapshot"}));
}

TEST(Facts, OfEachTreeSayWhichSectionHoldsIt) {
  const std::vector<std::string> places = places_in(*maker::open(maker::file()));
  EXPECT_EQ(places.front(), "/timestamp [] / snapshot");
  EXPECT_EQ(places.back(), "AssetInfo/control/os-name [] AssetInfo/control asset");
}

TEST(Facts, ANumberReadsAlikeInEveryProgram) {
  for (const char* value : {"0", "7", "-5", "499.50", "0.5", "-0.25", "123456789012345", "12345678901234.5"})
    EXPECT_TRUE(inv::is_number(value)) << value;
  for (const char* value : {"", "-", "007", "00.5", ".5", "5.", "1.2.3", "1e5", "+5", " 5", "5 ", "0x1F",
                            "1,5", "1234567890123456", "123456789012345.6", "--5", "5-", "-007"})
    EXPECT_FALSE(inv::is_number(value)) << value;
}

}  // namespace
