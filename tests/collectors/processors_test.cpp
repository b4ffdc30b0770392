#include "collectors/processors.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

std::string processors_of(const Item& hardware) {
  InventoryTree profiler = profiler_with("SPHardwareDataType", {hardware});
  return collected(collect_processors, profiler);
}

// The text of a snapshot with one processor that has these lines below its own.
std::string one_processor(const std::string& type, const std::string& lines) {
  return "+Snapshot=\n+Processors=\n*Processor:1=" + type + "\n" + lines + "-\n-\n";
}

constexpr char kNothing[] = "*Snapshot=\n";

TEST(Processors, WritesEveryFactOfEachPackage) {
  EXPECT_EQ(processors_of({{"packages", 2},
                           {"number_processors", 8},
                           {"cpu_type", "Quad-Core Intel Xeon"},
                           {"l2_cache_core", "256 KB"},
                           {"l3_cache", "16 MB"},
                           {"current_processor_speed", "2.93 GHz"}}),
            "+Snapshot=\n+Processors=\n"
            "*Processor:1=Quad-Core Intel Xeon\ncore-count=8\nl2-cache-size=1024\nl3-cache-size=8192\n"
            "current-clock-speed=2930\n"
            "*Processor:2=Quad-Core Intel Xeon\ncore-count=8\nl2-cache-size=1024\nl3-cache-size=8192\n"
            "current-clock-speed=2930\n"
            "-\n-\n");
}

TEST(Processors, DividesCachesAmongThePackages) {
  EXPECT_EQ(processors_of({{"packages", 2}, {"l2_cache", "6 MB"}, {"l3_cache", "8 MB"}}),
            "+Snapshot=\n+Processors=\n*Processor:1=CPU #1\nl2-cache-size=3072\nl3-cache-size=4096\n"
            "*Processor:2=CPU #1\nl2-cache-size=3072\nl3-cache-size=4096\n-\n-\n");
}

TEST(Processors, DividesWholeKilobytes) {
  // 3 packages share 2.5 KB: 2 / 3 is 0.
  const std::string text = processors_of({{"packages", 3}, {"l2_cache", "2.5 KB"}});
  EXPECT_NE(text.find("*Processor:3=CPU #1\nl2-cache-size=0\n"), std::string::npos) << text;
}

TEST(Processors, CutsPerCoreSharesOffOnlyAtTheEnd) {
  // 4 cores of 0.9 KB in 3 packages: 1.2 KB each, where whole kilobytes would give 0.
  const std::string text =
      processors_of({{"packages", 3}, {"number_processors", 4}, {"l3_cache_core", "0.9 KB"}});
  EXPECT_NE(text.find("l3-cache-size=1\n"), std::string::npos) << text;
}

TEST(Processors, SharesCachesInDoublePrecision) {
  // 0.7 in single precision, times 10, is just below 7; in single precision it would round to 7.
  EXPECT_EQ(one_processor("CPU #1", "core-count=10\nl2-cache-size=6\nl3-cache-size=6\n"),
            processors_of({{"packages", 1},
                           {"number_processors", 10},
                           {"l2_cache_core", "0.7 KB"},
                           {"l3_cache_core", "0.7 KB"}}));
}

TEST(Processors, MultipliesTheClockSpeedInSinglePrecision) {
  // 1.001 times 1000 is below 1001 in double precision, 1.012 times 1000 is below 1012 in single precision.
  EXPECT_EQ(one_processor("CPU #1", "current-clock-speed=1001\n"),
            processors_of({{"packages", 1}, {"current_processor_speed", "1.001 GHz"}}));
  EXPECT_EQ(one_processor("CPU #1", "current-clock-speed=1011\n"),
            processors_of({{"packages", 1}, {"current_processor_speed", "1.012 GHz"}}));
}

TEST(Processors, PrefersTheCacheReportedPerCore) {
  EXPECT_EQ(processors_of({{"packages", 1},
                           {"number_processors", 2},
                           {"l2_cache", "3 MB"},
                           {"l2_cache_core", "256 KB"},
                           {"l3_cache", "3 MB"},
                           {"l3_cache_core", "2 MB"}}),
            one_processor("CPU #1", "core-count=2\nl2-cache-size=512\nl3-cache-size=4096\n"));
}

TEST(Processors, CallsEveryNamelessPackageTheFirst) {
  EXPECT_EQ(processors_of({{"packages", 2}, {"number_processors", 4}}),
            "+Snapshot=\n+Processors=\n*Processor:1=CPU #1\ncore-count=4\n*Processor:2=CPU "
            "#1\ncore-count=4\n-\n-\n");
}

TEST(Processors, CutsTheClockSpeedAtItsBlankInTheProfilerTreeToo) {
  InventoryTree profiler =
      profiler_with("SPHardwareDataType", {{{"packages", 2}, {"current_processor_speed", "2.4 GHz"}}});
  const std::string text = collected(collect_processors, profiler);
  EXPECT_NE(text.find("*Processor:1=CPU #1\ncurrent-clock-speed=2400\n"), std::string::npos) << text;
  EXPECT_NE(text.find("*Processor:2=CPU #1\ncurrent-clock-speed=2400\n"), std::string::npos) << text;
  EXPECT_NE(tree_text(profiler).find("current_processor_speed=2.4\n"), std::string::npos);
}

TEST(Processors, ReadsAnySpeedAsGigahertz) {
  EXPECT_EQ(processors_of({{"packages", 1}, {"current_processor_speed", "800 MHz"}}),
            one_processor("CPU #1", "current-clock-speed=800000\n"));
}

TEST(Processors, ReadsOnlyTheFirstItem) {
  InventoryTree profiler =
      profiler_with("SPHardwareDataType", {{{"packages", 1}, {"number_processors", 2}}, {{"packages", 4}}});
  EXPECT_EQ(collected(collect_processors, profiler), one_processor("CPU #1", "core-count=2\n"));
}

TEST(Processors, CopiesTheCoreCountInItsKind) {
  // Apple silicon reports performance and efficiency cores in a text.
  EXPECT_EQ(processors_of({{"packages", 1}, {"number_processors", "proc 8:6:2"}}),
            one_processor("CPU #1", "core-count=proc 8:6:2\n"));
}

TEST(Processors, WritesNothingWithoutPackages) {
  EXPECT_EQ(processors_of({{"number_processors", 8}}), kNothing);
  EXPECT_EQ(processors_of({{"packages", "2"}}), kNothing);
  EXPECT_EQ(processors_of({{"packages", 0}}), kNothing);
  EXPECT_EQ(processors_of({{"packages", -1}}), kNothing);
}

TEST(Processors, WritesNothingWithoutItsDataType) {
  InventoryTree empty = empty_profiler();
  EXPECT_EQ(collected(collect_processors, empty), kNothing);
  InventoryTree no_item = profiler_with("SPHardwareDataType", {});
  EXPECT_EQ(collected(collect_processors, no_item), kNothing);
  InventoryTree no_items = empty_profiler();
  no_items.set_attribute("/SPHardwareDataType/_items", text_value("none"));
  EXPECT_EQ(collected(collect_processors, no_items), kNothing);
}

TEST(Processors, KeepsTheLowHalfOfThePackageCount) {
  EXPECT_EQ(processors_of({{"packages", int64_t{0x300000001}}, {"number_processors", int64_t{0x100000001}}}),
            one_processor("CPU #1", "core-count=4294967297\n"));
}

TEST(Processors, StopsAtAThousandAndTwentyFourPackages) {
  InventoryTree profiler = profiler_with(
      "SPHardwareDataType", {{{"packages", 2000000000}, {"number_processors", 1}, {"l2_cache", "2 MB"}}});
  InventoryTree snapshot = empty_snapshot();
  collect_processors(snapshot, profiler);
  const Tag* processors = snapshot.top().find_child("Processors");
  ASSERT_EQ(processors->children().size(), 1024u);
  EXPECT_EQ(processors->child_at(1023)->find_attribute("l2-cache-size")->value().int64(), 2);
}

TEST(Processors, LeavesOutOnlyTheValuesOfTheWrongKind) {
  EXPECT_EQ(processors_of({{"packages", 1},
                           {"cpu_type", 7},
                           {"number_processors/item0", 8},
                           {"l2_cache", 6},
                           {"l2_cache_core", 6},
                           {"l3_cache", "none"},
                           {"current_processor_speed", 2}}),
            one_processor("7", "l3-cache-size=0\n"));
}

TEST(Processors, KeepsAbsurdFiguresInRange) {
  EXPECT_EQ(processors_of({{"packages", 1},
                           {"number_processors", int64_t{INT32_MIN}},
                           {"l2_cache_core", "1e30 TB"},
                           {"l3_cache", "nan GB"},
                           {"current_processor_speed", "1e300 GHz"}}),
            one_processor("CPU #1",
                          "core-count=-2147483648\nl2-cache-size=-9223372036854775808\n"
                          "l3-cache-size=0\ncurrent-clock-speed=9223372036854775807\n"));
}

}  // namespace
