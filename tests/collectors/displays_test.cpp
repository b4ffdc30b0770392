#include "collectors/displays.h"

#include <gtest/gtest.h>

#include <limits>

#include "collectors/fields.h"
#include "tests/collectors/edid_block.h"
#include "tests/collectors/item_lists.h"

namespace {

constexpr char kType[] = "SPDisplaysDataType";

Item adapter_with(std::initializer_list<Item> displays, const Item& keys = {}) {
  return holding("spdisplays_ndrvs", displays, keys);
}

Item named_with(const char* name, const EdidBlock& block) {
  return {{"_name", name}, {"_spdisplays_edid", block.text().c_str()}};
}
Item display_with(const EdidBlock& block) { return named_with("Screen", block); }
Item connector_with(const EdidBlock& block) { return named_with("spdisplays_display_connector", block); }

InventoryTree collect(std::initializer_list<Item> adapters) {
  InventoryTree profiler = profiler_with(kType, adapters);
  InventoryTree snapshot = empty_snapshot();
  collect_displays(snapshot, profiler);
  return snapshot;
}

// The tag at a path below "/Video"; null when there is none.
const Tag* find(const InventoryTree& snapshot, std::initializer_list<const char*> path) {
  const Tag* tag = snapshot.top().find_child("Video");
  for (const char* name : path) tag = tag ? tag->find_child(name) : nullptr;
  return tag;
}

const Tag* first_monitor(const InventoryTree& snapshot) { return find(snapshot, {"Monitors", "Monitor:1"}); }

class OneMonitor {
 public:
  explicit OneMonitor(const Item& display) : snapshot_(collect({adapter_with({display})})) {}
  explicit OneMonitor(const EdidBlock& block) : OneMonitor(display_with(block)) {}

  const Tag& tag() const { return *first_monitor(snapshot_); }
  const Attribute* attribute(const char* name) const { return tag().find_attribute(name); }
  std::string text(const char* name) const { return find_text(tag(), name); }
  int64_t number(const char* name) const { return find_integer(tag(), name); }
  // A member of a compound field; -1 when there is no such field.
  int64_t member(const char* field, const char* name) const {
    const Tag* members = tag().find_child(field);
    return members ? find_integer(*members, name) : -1;
  }

 private:
  InventoryTree snapshot_;
};

TEST(CollectDisplays, WritesNothingWithoutTheDataType) {
  InventoryTree profiler = empty_profiler();
  EXPECT_EQ(collected(collect_displays, profiler), tree_text(empty_snapshot()));
}

TEST(CollectDisplays, WritesNothingWithoutItems) {
  InventoryTree profiler = empty_profiler();
  profiler.set_attribute("/SPDisplaysDataType/_items", text_value("no list"));
  EXPECT_EQ(collected(collect_displays, profiler), tree_text(empty_snapshot()));
}

TEST(CollectDisplays, WritesAMonitorAndItsAdapterInOrder) {
  EdidBlock block;
  block.set(8, {0x06, 0x10, 0x2B, 0x0A, 1, 2, 3, 4, 14, 22, 1, 3, 0x95, 52, 32, 120, 0xEA})
      .set(38, {0xD1, 0xC0, 0x81, 0x80})
      .describe(0, 0xFC, "Cinema\n      ")
      .describe(1, 0xFF, "S 1")
      .describe(2, 0xFD, std::string("\x38\x4B\x1E\x51", 4));
  const Item display = {
      {"_name", "Cinema"}, {"spdisplays_main", "spdisplays_yes"}, {"_spdisplays_edid", block.text().c_str()}};
  InventoryTree profiler = profiler_with(
      kType, {adapter_with({display}, {{"sppci_model", "Graphics 9400"}, {"spdisplays_vram", "256 MB"}})});
  EXPECT_EQ(collected(collect_displays, profiler), R"(+Snapshot=
+Video=
+Monitors=
+Monitor:1=?APP A2B|Cinema
main-monitor=1
~type=bool
manuf=?APP
id=APP A2B
name=?APP A2B|Cinema
model=Cinema
video-input=149
synch-input=149
color-features=234
dpms-mode-support=234
gamma=2.20
max-resolution=1920 x 1080
serial-digital=16909060
manufacture-date=
~complex=
serial=S 1
max-visible-image-size=
~complex=
h-freq=
~complex=
aspect-ratio=16:10
v-freq=
~complex=
*manufacture-date=
~field-source=
manufacture-year=2012
manufacture-quarter=2
manufacture-week=14
*max-visible-image-size=
~field-source=
width=52
height=32
diagonal=24
*h-freq=
~field-source=
min=30
max=81
*v-freq=
~field-source=
min=56
max=75
+Video-Modes=
v-mode:1=
~complex=
v-mode:2=
~complex=
*v-mode:1=
~field-source=
res=1920 x 1080 (16:9)
freq=60
*v-mode:2=
~field-source=
res=1280 x 1024 (5:4)
freq=60
-
-
-
+Video-devices=
*Video-adapter:1=Graphics 9400
ram=256
~units=MB
-
-
-
)");
}

TEST(CollectDisplays, SaysWhetherADisplayIsTheMainOne) {
  const auto main_monitor = [](const Key& key) {
    return OneMonitor(Item{{"_name", "Screen"}, key}).text("main-monitor");
  };
  EXPECT_EQ(main_monitor({"spdisplays_main", "spdisplays_yes"}), "1");
  EXPECT_EQ(main_monitor({"spdisplays_main", "spdisplays_no"}), "0");
}

TEST(CollectDisplays, SaysNothingOfTheMainDisplayWhereTheProfilerDoesNot) {
  EXPECT_EQ(OneMonitor(EdidBlock()).attribute("main-monitor"), nullptr);
}

TEST(CollectDisplays, GivesAMonitorItsMakersCodesAndName) {
  const OneMonitor monitor(
      EdidBlock().set(8, {0x06, 0x10, 0x2B, 0x0A}).describe(0, 0xFC, " \tCinema \r\n\t  "));
  EXPECT_EQ(monitor.text("manuf"), "?APP");
  EXPECT_EQ(monitor.text("id"), "APP A2B");
  EXPECT_EQ(monitor.text("name"), "?APP A2B|Cinema");
  EXPECT_STREQ(monitor.tag().value()->text(), "?APP A2B|Cinema");
  EXPECT_EQ(monitor.text("model"), "Cinema");
}

TEST(CollectDisplays, KeepsTheLinesAfterAPlainDisplaysName) {
  // The name runs on over extension count and checksum.
  const OneMonitor monitor(EdidBlock().describe(3, 0xFC, "Cinema\n      \x01x"));
  EXPECT_EQ(monitor.text("model"), "Cinema\r      \x01x");
  EXPECT_EQ(monitor.text("name"), "?@@@   0|Cinema\r      \x01x");
}

TEST(CollectDisplays, EndsAConnectedDisplaysNameWithItsFirstLine) {
  const OneMonitor monitor(connector_with(EdidBlock().describe(3, 0xFC, "\tCinema \n    \x01x")));
  EXPECT_EQ(monitor.text("model"), "Cinema");
  EXPECT_EQ(monitor.text("name"), "?@@@   0|Cinema");
}

TEST(CollectDisplays, CutsAConnectedDisplaysNameAtALineFeedOnly) {
  // A carriage return within a line is dropped, as from every text.
  const OneMonitor monitor(connector_with(EdidBlock().describe(0, 0xFC, "Cine\rma\t2\nx")));
  EXPECT_EQ(monitor.text("model"), "Cinema\t2");
  EXPECT_EQ(monitor.text("name"), "?@@@   0|Cinema\t2");
}

TEST(CollectDisplays, MarksThatAPlainDisplayHasNoName) {
  const OneMonitor monitor{EdidBlock()};
  EXPECT_EQ(monitor.text("name"), "?@@@   0|(null)");
  EXPECT_EQ(monitor.text("model"), "");
}

TEST(CollectDisplays, LeavesTheNameOfAConnectedDisplayWithoutOneEmpty) {
  const OneMonitor monitor(connector_with(EdidBlock()));
  EXPECT_EQ(monitor.text("name"), "?@@@   0|");
  EXPECT_EQ(monitor.text("model"), "");
}

TEST(CollectDisplays, AcceptsAnEmptyName) {
  EXPECT_EQ(OneMonitor(EdidBlock().describe(0, 0xFC, "  \n")).text("name"), "?@@@   0|");
  EXPECT_EQ(OneMonitor(connector_with(EdidBlock().describe(0, 0xFC, "\nx"))).text("name"), "?@@@   0|");
}

TEST(CollectDisplays, WritesNoMainMonitorForAConnector) {
  Item connector = connector_with(EdidBlock());
  connector.push_back({"spdisplays_main", "spdisplays_yes"});
  EXPECT_EQ(OneMonitor(connector).attribute("main-monitor"), nullptr);
}

TEST(CollectDisplays, WritesInputAndFeatureBytesTwiceEach) {
  const OneMonitor monitor(EdidBlock().set(20, {0x95}).set(24, {0xEA}));
  EXPECT_EQ(monitor.number("video-input"), 0x95);
  EXPECT_EQ(monitor.number("synch-input"), 0x95);
  EXPECT_EQ(monitor.number("color-features"), 0xEA);
  EXPECT_EQ(monitor.number("dpms-mode-support"), 0xEA);
}

TEST(CollectDisplays, WritesTheDigitalSerialNumberUnsigned) {
  EXPECT_EQ(OneMonitor(EdidBlock().set(12, {0xFF, 0, 0, 1})).number("serial-digital"), 0xFF000001);
}

TEST(CollectDisplays, LeavesTheSerialTextUntrimmed) {
  // Except for the blanks at its ends, which no text in the inventory has.
  EXPECT_EQ(OneMonitor(EdidBlock().describe(0, 0xFF, " \tS-1\n  ")).text("serial"), "\tS-1\r");
  EXPECT_EQ(OneMonitor(EdidBlock()).text("serial"), "");
}

TEST(CollectDisplays, WritesAnEmptyMaximumResolutionWithoutTimings) {
  EXPECT_EQ(OneMonitor(EdidBlock()).text("max-resolution"), "");
}

TEST(CollectDisplays, CountsTheQuarterFromTheWeek) {
  struct {
    uint8_t week;
    int64_t quarter;
  } const rows[] = {{0, 0},  {1, 1},  {13, 1}, {14, 2}, {26, 2},  {27, 3},
                    {39, 3}, {40, 4}, {52, 4}, {53, 5}, {255, 20}};
  for (const auto& row : rows) {
    const OneMonitor monitor(EdidBlock().set(16, {row.week}));
    EXPECT_EQ(monitor.member("manufacture-date", "manufacture-quarter"), row.quarter) << int{row.week};
    EXPECT_EQ(monitor.member("manufacture-date", "manufacture-week"), row.week);
  }
}

TEST(CollectDisplays, MarksCompoundFieldsAtAttributeAndTag) {
  const OneMonitor monitor(
      EdidBlock().set(38, {0x81, 0x80}).describe(0, 0xFD, std::string("\x38\x4B\x1E\x51", 4)));
  for (const char* name : {"manufacture-date", "max-visible-image-size", "h-freq", "v-freq"}) {
    SCOPED_TRACE(name);
    ASSERT_NE(monitor.attribute(name), nullptr);
    EXPECT_EQ(monitor.text(name), "");
    ASSERT_NE(monitor.attribute(name)->find_annotation("complex"), nullptr);
    EXPECT_EQ(monitor.attribute(name)->find_annotation("complex")->text, "");
    ASSERT_EQ(monitor.tag().find_child(name)->annotations().size(), 1u);
    EXPECT_EQ(monitor.tag().find_child(name)->annotations()[0].key, "field-source");
    EXPECT_EQ(monitor.tag().find_child(name)->annotations()[0].text, "");
  }
}

TEST(CollectDisplays, RoundsTheDiagonalUpFromFourTenths) {
  struct {
    uint8_t width;
    uint8_t height;
    int64_t diagonal;
  } const rows[] = {
      {52, 32, 24},                   // 24.04
      {60, 34, 27},                   // 27.15
      {43, 27, 20},                   // 19.99
      {48, 0, 19},                    // 18.90
      {57, 0, 23},                    // 22.44
      {34, 27, 17},                   // 17.09
      {0, 0, 0},    {255, 255, 142},  // 141.98
  };
  for (const auto& row : rows) {
    const OneMonitor monitor(EdidBlock().set(21, {row.width, row.height}));
    EXPECT_EQ(monitor.member("max-visible-image-size", "diagonal"), row.diagonal)
        << int{row.width} << " x " << int{row.height};
    EXPECT_EQ(monitor.member("max-visible-image-size", "width"), row.width);
    EXPECT_EQ(monitor.member("max-visible-image-size", "height"), row.height);
  }
}

TEST(CollectDisplays, RoundsTheDiagonalUpOnlyAboveFourTenths) {
  // The sizes whose diagonals come closest to four tenths of an inch, from either side.
  struct {
    uint8_t width;
    uint8_t height;
    int64_t diagonal;
  } const rows[] = {
      {69, 40, 31},  {81, 63, 40},   {252, 123, 110},  // 31.39995, 40.39992, 110.39991
      {100, 99, 56}, {141, 137, 78}, {145, 64, 63},    // 55.40001, 77.40001, 62.40002
  };                                                   // 22.44, 2.36, 0.39
  for (const auto& row : rows) {
    const OneMonitor monitor(EdidBlock().set(21, {row.width, row.height}));
    EXPECT_EQ(monitor.member("max-visible-image-size", "diagonal"), row.diagonal)
        << int{row.width} << " x " << int{row.height};
  }
}

std::string aspect_ratio(uint8_t width, uint8_t height) {
  return OneMonitor(EdidBlock().set(21, {width, height})).text("aspect-ratio");
}

TEST(CollectDisplays, NamesTheAspectOfTheImageSize) {
  EXPECT_EQ(aspect_ratio(40, 30), "4:3");
  EXPECT_EQ(aspect_ratio(34, 27), "5:4");
  EXPECT_EQ(aspect_ratio(60, 34), "16:9");   // 1.765
  EXPECT_EQ(aspect_ratio(52, 32), "16:10");  // 1.625
  EXPECT_EQ(aspect_ratio(43, 27), "16:10");  // 1.593
}

TEST(CollectDisplays, NamesNoAspectBetweenTheKnownOnes) {
  EXPECT_EQ(aspect_ratio(48, 40), "");  // 1.2
  EXPECT_EQ(aspect_ratio(45, 30), "");  // 1.5
  EXPECT_EQ(aspect_ratio(170, 100), "");
  EXPECT_EQ(aspect_ratio(190, 100), "");
  EXPECT_EQ(aspect_ratio(30, 40), "");
  EXPECT_EQ(aspect_ratio(0, 40), "");
}

TEST(CollectDisplays, ComparesTheAspectInSinglePrecisionWithOpenBounds) {
  // The quotient in single precision is just below or above the bound in double precision.
  EXPECT_EQ(aspect_ratio(31, 24), "5:4");
  EXPECT_EQ(aspect_ratio(62, 48), "5:4");
  EXPECT_EQ(aspect_ratio(29, 24), "5:4");
  EXPECT_EQ(aspect_ratio(125, 72), "16:9");
  EXPECT_EQ(aspect_ratio(28, 15), "");
  EXPECT_EQ(aspect_ratio(187, 120), "");
  EXPECT_EQ(aspect_ratio(76, 45), "");
  // Both are exactly 11/8.
  EXPECT_EQ(aspect_ratio(11, 8), "");
  EXPECT_EQ(aspect_ratio(33, 24), "");
}

TEST(CollectDisplays, DrawsTheBoundsOfEachAspectBetweenTheClosestSizes) {
  // Of all sizes in whole centimetres, those that come closest to a bound from below and from above.
  struct {
    uint8_t width;
    uint8_t height;
    const char* aspect;
  } const rows[] = {
      {238, 197, ""},      {255, 211, "5:4"},   // 29/24
      {226, 175, "5:4"},   {239, 185, "4:3"},   // 31/24
      {246, 179, "4:3"},   {249, 181, ""},      // 11/8
      {254, 163, ""},      {120, 77, "16:10"},  // 187/120
      {255, 151, "16:10"}, {201, 119, ""},      // 76/45
      {217, 125, ""},      {158, 91, "16:9"},   // 125/72
      {237, 127, "16:9"},  {239, 128, ""},      // 28/15
  };
  for (const auto& row : rows)
    EXPECT_EQ(aspect_ratio(row.width, row.height), row.aspect) << int{row.width} << " x " << int{row.height};
}

TEST(CollectDisplays, SaysWhyAnAspectHasNoName) {
  const auto reason = [](uint8_t width, uint8_t height) {
    const OneMonitor monitor(EdidBlock().set(21, {width, height}));
    const auto& annotations = monitor.attribute("aspect-ratio")->annotations();
    return annotations.empty() ? "" : annotations[0].key + "=" + annotations[0].text;
  };
  EXPECT_EQ(reason(45, 30), ":other=");
  EXPECT_EQ(reason(45, 0), ":unknown=");
  EXPECT_EQ(reason(0, 0), ":unknown=");
  EXPECT_EQ(reason(40, 30), "");
}

TEST(CollectDisplays, WritesAFrequencyRangeOnlyWithBothEnds) {
  const OneMonitor neither{EdidBlock()};
  EXPECT_EQ(neither.attribute("h-freq"), nullptr);
  EXPECT_EQ(neither.attribute("v-freq"), nullptr);
  const OneMonitor horizontal(EdidBlock().describe(0, 0xFD, std::string("\x38\x00\x1E\x51", 4)));
  EXPECT_EQ(horizontal.member("h-freq", "min"), 30);
  EXPECT_EQ(horizontal.member("h-freq", "max"), 81);
  EXPECT_EQ(horizontal.attribute("v-freq"), nullptr);
  const OneMonitor vertical(EdidBlock().describe(0, 0xFD, std::string("\x38\x4B\x00\x51", 4)));
  EXPECT_EQ(vertical.member("v-freq", "min"), 56);
  EXPECT_EQ(vertical.member("v-freq", "max"), 75);
  EXPECT_EQ(vertical.attribute("h-freq"), nullptr);
}

TEST(CollectDisplays, NumbersTheVideoModesInTheOrderOfTheirPairs) {
  const OneMonitor monitor(EdidBlock().set(38, {0xB3, 0x0F, 0x01, 0x01, 0x81, 0x80}));
  const Tag& modes = *monitor.tag().find_child("Video-Modes");
  ASSERT_EQ(modes.children().size(), 2u);
  EXPECT_STREQ(find_text(*modes.find_child("v-mode:1"), "res"), "1680 x 1050 (16:10)");
  EXPECT_EQ(find_integer(*modes.find_child("v-mode:1"), "freq"), 75);
  EXPECT_STREQ(find_text(*modes.find_child("v-mode:2"), "res"), "1280 x 1024 (5:4)");
  EXPECT_NE(modes.find_attribute("v-mode:2")->find_annotation("complex"), nullptr);
}

TEST(CollectDisplays, WritesNoListOfModesWithoutModes) {
  EXPECT_EQ(OneMonitor(EdidBlock()).tag().find_child("Video-Modes"), nullptr);
}

// The names of the elements in a list below "/Video", separated by blanks.
std::string elements(const InventoryTree& snapshot, const char* list) {
  const Tag* tag = find(snapshot, {list});
  std::string names;
  if (!tag) return names;
  for (const auto& child : tag->children()) names += child->name() + " ";
  return names;
}

TEST(CollectDisplays, NumbersMonitorsThroughAllAdapters) {
  const Item screen = display_with(EdidBlock());
  const InventoryTree snapshot =
      collect({adapter_with({screen}), {{"sppci_model", "Idle card"}}, adapter_with({screen})});
  EXPECT_EQ(elements(snapshot, "Monitors"), "Monitor:1 Monitor:2 ");
  EXPECT_EQ(elements(snapshot, "Video-devices"), "Video-adapter:1 Video-adapter:2 Video-adapter:3 ");
}

TEST(CollectDisplays, NumbersADisplayWithoutEdidButNotAnEmptyConnector) {
  const InventoryTree snapshot = collect({adapter_with({{{"_name", "Projector"}},
                                                        display_with(EdidBlock()),
                                                        {{"_name", "spdisplays_display_connector"}},
                                                        display_with(EdidBlock()),
                                                        connector_with(EdidBlock()),
                                                        display_with(EdidBlock())})});
  EXPECT_EQ(elements(snapshot, "Monitors"), "Monitor:2 Monitor:3 Monitor:4 Monitor:5 ");
}

TEST(CollectDisplays, TreatsADisplayWithoutNameAsAPlainOne) {
  const OneMonitor monitor(Item{{"_spdisplays_edid", EdidBlock().text().c_str()}});
  EXPECT_EQ(monitor.text("name"), "?@@@   0|(null)");
}

TEST(CollectDisplays, WritesOnlyMainMonitorForADisplayWithoutEdid) {
  const OneMonitor monitor(Item{{"_name", "Projector"}, {"spdisplays_main", "spdisplays_no"}});
  EXPECT_EQ(monitor.tag().value(), nullptr);
  ASSERT_EQ(monitor.tag().attributes().size(), 1u);
  EXPECT_EQ(monitor.text("main-monitor"), "0");
  EXPECT_EQ(monitor.attribute("main-monitor")->find_annotation("type")->text, "bool");
}

TEST(CollectDisplays, IgnoresAnEdidThatIsNotAText) {
  const InventoryTree snapshot =
      collect({adapter_with({{{"_name", "Screen"}, {"_spdisplays_edid", 255}},
                             {{"_name", "spdisplays_display_connector"}, {"_spdisplays_edid", 255}},
                             {{"_name", 7}, {"_spdisplays_edid", ""}}})});
  EXPECT_EQ(elements(snapshot, "Monitors"), "Monitor:2 ");
}

struct Adapter {
  std::string model;
  int64_t ram;
};

Adapter adapter_of(const Item& item) {
  const InventoryTree snapshot = collect({item});
  const Tag& adapter = *find(snapshot, {"Video-devices", "Video-adapter:1"});
  EXPECT_EQ(adapter.find_attribute("ram")->find_annotation("units")->text, "MB");
  const char* model = adapter.value()->text();
  return {model ? model : "(none)", find_integer(adapter, "ram")};
}

TEST(CollectDisplays, WritesModelAndMemoryOfAnAdapter) {
  EXPECT_EQ(adapter_of({{"sppci_model", "Graphics 9400"}, {"spdisplays_vram", "256 MB"}}).model,
            "Graphics 9400");
  EXPECT_EQ(adapter_of({{"spdisplays_vram", "256 MB"}}).ram, 256);
  EXPECT_EQ(adapter_of({{"spdisplays_vram", "1,5 GB"}}).ram, 1536);
  EXPECT_EQ(adapter_of({{"spdisplays_vram", "1535 KB"}}).ram, 1);
}

TEST(CollectDisplays, WritesAnAdapterWithoutModelAsAnElementWithoutValue) {
  EXPECT_EQ(adapter_of({}).model, "(none)");
}

TEST(CollectDisplays, CountsMemoryThatIsNotASizeAsZero) {
  EXPECT_EQ(adapter_of({}).ram, 0);
  EXPECT_EQ(adapter_of({{"spdisplays_vram", "spdisplays_integrated_vram"}}).ram, 0);
  EXPECT_EQ(adapter_of({{"spdisplays_vram", ""}}).ram, 0);
  EXPECT_EQ(adapter_of({{"spdisplays_vram", 256}}).ram, 0);
}

TEST(CollectDisplays, CutsHugeMemoryAtTheLargestNumber) {
  EXPECT_EQ(adapter_of({{"spdisplays_vram", "1e38 TB"}}).ram, std::numeric_limits<int64_t>::max());
  EXPECT_EQ(adapter_of({{"spdisplays_vram", "nan GB"}}).ram, 0);
}

TEST(CollectDisplays, BearsListsWhereItemsAreExpected) {
  InventoryTree profiler = profiler_with(kType, {{{"spdisplays_ndrvs/item0/_name/deep/deeper", "x"},
                                                  {"spdisplays_ndrvs/item1/_spdisplays_edid/x", "y"},
                                                  {"sppci_model/x", "y"}},
                                                 {{"spdisplays_ndrvs", "a text"}}});
  InventoryTree snapshot = empty_snapshot();
  collect_displays(snapshot, profiler);
  EXPECT_EQ(elements(snapshot, "Monitors"), "");
  EXPECT_EQ(elements(snapshot, "Video-devices"), "Video-adapter:1 Video-adapter:2 ");
}

}  // namespace
