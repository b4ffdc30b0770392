#include "inv/facts/readable.h"

#include <gtest/gtest.h>

namespace {

TEST(Readable, TimesAreSpelledOutAndOthersLeftAlone) {
  EXPECT_EQ(inv::readable_time("20120118153045.000000+120"), "2012-01-18 15:30:45 +02:00");
  EXPECT_EQ(inv::readable_time("20120118153045.000000-330"), "2012-01-18 15:30:45 -05:30");
  EXPECT_EQ(inv::readable_time("20120118153045.000000+0"), "2012-01-18 15:30:45 +00:00");
  for (const char* other :
       {"", "2012", "yesterday", "20120118153045.000000+120 or so", "20120118153045.000000*120"}) {
    EXPECT_EQ(inv::readable_time(other), other);
  }
}

TEST(Readable, UptimesAreSpelledOutAndOthersLeftAlone) {
  EXPECT_EQ(inv::readable_uptime("00000002030405.000000:000"), "2 days 3:04:05");
  EXPECT_EQ(inv::readable_uptime("00000001000000.000000:000"), "1 day 0:00:00");
  EXPECT_EQ(inv::readable_uptime("00000000230959.000000:000"), "23:09:59");
  EXPECT_EQ(inv::readable_uptime("long"), "long");
}

TEST(Readable, SizesTakeTheUnitThatFits) {
  EXPECT_EQ(inv::readable_size(0), "0 B");
  EXPECT_EQ(inv::readable_size(999), "999 B");
  EXPECT_EQ(inv::readable_size(1500), "1.5 KB");
  EXPECT_EQ(inv::readable_size(500107862016), "500 GB");
  EXPECT_EQ(inv::readable_size(999999999999), "1.0 TB");
  EXPECT_EQ(inv::readable_size(UINT64_MAX), "18 EB");
  EXPECT_EQ(inv::readable_memory(512), "512 MB");
  EXPECT_EQ(inv::readable_memory(8192), "8 GB");
  EXPECT_EQ(inv::readable_memory(6656), "6.5 GB");
}

TEST(Readable, WordsOfTheProfilerArePutInThoseOfPeople) {
  EXPECT_EQ(inv::readable_word("arch_arm_i64"), "Universal");
  EXPECT_EQ(inv::readable_word("package_source_other"), "others");
  EXPECT_EQ(inv::readable_word("Solid State"), "SSD");
  EXPECT_EQ(inv::readable_word("arch_riscv"), "arch_riscv");
  EXPECT_EQ(inv::readable_word(""), "");
}

TEST(Readable, CountsTakeThePluralOfTheirNoun) {
  EXPECT_EQ(inv::readable_count(0, "slot"), "0 slots");
  EXPECT_EQ(inv::readable_count(1, "process"), "1 process");
  EXPECT_EQ(inv::readable_count(2, "process"), "2 processes");
}

}  // namespace
