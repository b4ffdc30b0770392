#include "collectors/operating_system.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/collectors/tree_helpers.h"

namespace {

struct Version {
  const char* os_version;
  const char* name;
  const char* version;
  const char* update;
};

class OsVersions : public testing::TestWithParam<Version> {};

TEST_P(OsVersions, AreCutByPosition) {
  const OsVersion version = parse_os_version(GetParam().os_version);
  EXPECT_STREQ(GetParam().name, version.name.get());
  EXPECT_STREQ(GetParam().version, version.version.get());
  EXPECT_STREQ(GetParam().update, version.update.get());
}

INSTANTIATE_TEST_SUITE_P(
    Named, OsVersions,
    testing::Values(
        Version{"Mac OS X 10.0.4 (4Q12)", "Mac OS X v10.0 (Cheetah)", "10.0.4 (4Q12)", "Update 4"},
        Version{"Mac OS X 10.1.5 (5S60)", "Mac OS X v10.1 (Puma)", "10.1.5 (5S60)", "Update 5"},
        Version{"Mac OS X 10.2.8 (6R73)", "Mac OS X v10.2 (Jaguar)", "10.2.8 (6R73)", "Update 8"},
        Version{"Mac OS X 10.3.9 (7W98)", "Mac OS X v10.3 (Panther)", "10.3.9 (7W98)", "Update 9"},
        Version{"Mac OS X 10.4.11 (8S2167)", "Mac OS X v10.4 (Tiger)", "10.4.11 (8S2167)", "Update 11"},
        Version{"Mac OS X 10.5.8 (9L31a)", "Mac OS X v10.5 (Leopard)", "10.5.8 (9L31a)", "Update 8"},
        Version{"Mac OS X 10.6.8 (10K549)", "Mac OS X v10.6 (Snow Leopard)", "10.6.8 (10K549)", "Update 8"},
        Version{"Mac OS X 10.7.5 (11G63)", "Mac OS X v10.7 (Lion)", "10.7.5 (11G63)", "Update 5"}));

INSTANTIATE_TEST_SUITE_P(WithoutUpdate, OsVersions,
                         testing::Values(Version{"Mac OS X 10.7 (11A511)", "Mac OS X v10.7 (Lion)",
                                                 "10.7 (11A511)", "Version(build) (11A511)"},
                                         Version{"Mac OS X 10.6 (10A432)", "Mac OS X v10.6 (Snow Leopard)",
                                                 "10.6 (10A432)", "Version(build) (10A432)"}));

INSTANTIATE_TEST_SUITE_P(
    LaterSystems, OsVersions,
    testing::Values(
        // Only the first digit of the minor version is looked at.
        Version{"Mac OS X 10.10.5 (14F27)", "Mac OS X v10.1 (Puma)", "10.10.5 (14F27)", "Update .5"},
        Version{"Mac OS X 10.8.1 (12B19)", "Mac OS X 10.8.1 (12B19)", "10.8.1 (12B19)", "Update 1"},
        Version{"Mac OS X 10.9 (13A603)", "Mac OS X 10.9 (13A603)", "10.9 (13A603)",
                "Version(build) (13A603)"},
        Version{"OS X 10.10 (14A389)", "Mac OS X v10.1 (Puma)", "0 (14A389)", "Version(build) A389)"},
        Version{"macOS 15.3 (24D5040f)", "Mac OS X v10.2 (Jaguar)", "3 (24D5040f)",
                "Version(build) D5040f)"}));

INSTANTIATE_TEST_SUITE_P(
    Short, OsVersions,
    testing::Values(Version{"", "", "", nullptr}, Version{"Mac OS X", "Mac OS X", "", nullptr},
                    Version{"Mac OS X 10.", "Mac OS X 10.", "10.", nullptr},
                    Version{"Mac OS X 10.6", "Mac OS X v10.6 (Snow Leopard)", "10.6", nullptr},
                    Version{"Mac OS X 10.6 ", "Mac OS X v10.6 (Snow Leopard)", "10.6 ", "Version(build) "}));

TEST(Uptime, AddsItsFieldsUp) {
  EXPECT_EQ(parse_uptime("up 2:03:04:05"), 183845);
  EXPECT_EQ(parse_uptime("up 0:0:53:48"), 3228);
  EXPECT_EQ(86400 * 1234, parse_uptime("up 1234:0:0:0"));
  EXPECT_EQ(parse_uptime("up 90"), 90);
}

TEST(Uptime, CountsFieldsAboveTheDaysAsDays) { EXPECT_EQ(86400 * 3, parse_uptime("up 1:2:0:0:0")); }

TEST(Uptime, EndsAtTheLastBlank) { EXPECT_EQ(parse_uptime("up 1:00 5"), 5); }

TEST(Uptime, LeavesOutAFirstFieldThatNothingPrecedes) {
  EXPECT_EQ(parse_uptime("03:05"), 5);
  EXPECT_EQ(parse_uptime("35"), 0);
  // The first character is never looked at.
  EXPECT_EQ(parse_uptime(":5"), 0);
  EXPECT_EQ(parse_uptime(" 5"), 0);
}

TEST(Uptime, ReadsOtherCharactersAsZeros) {
  EXPECT_EQ(parse_uptime("up 1x5"), 105);
  EXPECT_EQ(parse_uptime("up long"), 0);
}

TEST(Uptime, IsZeroForAShortText) {
  for (const char* text : {"", "u", "up", " ", ":"}) EXPECT_EQ(parse_uptime(text), 0) << text;
}

TEST(Uptime, StaysInItsRange) {
  const std::string nines(1000, '9');
  const std::string zeros(1000, '0');
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), parse_uptime(("up " + nines).c_str()));
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), parse_uptime(("up " + nines + ":0:0:" + nines).c_str()));
  EXPECT_EQ(parse_uptime(("up " + zeros + "7").c_str()), 7);
  EXPECT_EQ(7 * 60, parse_uptime(("up 7:" + zeros).c_str()));
}

std::string os_of(const Item& software) {
  InventoryTree profiler = profiler_with("SPSoftwareDataType", {software});
  return collected(collect_os, profiler);
}

TEST(OperatingSystem, WritesItsOneElement) {
  EXPECT_EQ(os_of({{"os_version", "Mac OS X 10.6.8 (10K549)"},
                   {"kernel_version", "Darwin 10.8.0"},
                   {"uptime", "up 2:03:04:05"},
                   {"64bit_kernel_and_kexts", "yes"}}),
            "+Snapshot=\n+OS=\n*os:1=Mac OS X v10.6 (Snow Leopard)\n~kind=mac\n"
            "name=Mac OS X v10.6 (Snow Leopard)\nversion=10.6.8 (10K549)\nupdate=Update 8\n"
            "kernel=Darwin 10.8.0\nmanuf=Apple "
            "Inc.\nuptime=00000002030405.000000:000\narchitecture=64-bit\n-\n-\n");
}

std::string other_facts(const std::string& lines) {
  return "+Snapshot=\n+OS=\n*os:1=\n~kind=mac\n" + lines + "-\n-\n";
}

TEST(OperatingSystem, ReportsTheKernelsWidthOnlyWhereTheProfilerDoes) {
  EXPECT_EQ(other_facts("manuf=Apple Inc.\narchitecture=64-bit\n"),
            os_of({{"64bit_kernel_and_kexts", "yes"}}));
  EXPECT_EQ(other_facts("manuf=Apple Inc.\narchitecture=32-bit\n"),
            os_of({{"64bit_kernel_and_kexts", "no"}}));
  EXPECT_EQ(other_facts("manuf=Apple Inc.\narchitecture=32-bit\n"), os_of({{"64bit_kernel_and_kexts", ""}}));
  EXPECT_EQ(other_facts("manuf=Apple Inc.\n"), os_of({}));
}

TEST(OperatingSystem, WritesUptimeInEightDigitsOfDaysAndMore) {
  EXPECT_EQ(other_facts("manuf=Apple Inc.\nuptime=00000000005348.000000:000\n"),
            os_of({{"uptime", "up 0:0:53:48"}}));
  EXPECT_EQ(other_facts("manuf=Apple Inc.\nuptime=106751991167300153007.000000:000\n"),
            os_of({{"uptime", "up 999999999999999999999999:0:0:0"}}));
}

TEST(OperatingSystem, LeavesOutOnlyTheValuesOfTheWrongKind) {
  EXPECT_EQ(other_facts("kernel=10\nmanuf=Apple Inc.\n"), os_of({{"os_version", 10},
                                                                 {"kernel_version", 10},
                                                                 {"uptime/item0", "up 1"},
                                                                 {"64bit_kernel_and_kexts", 1}}));
}

TEST(OperatingSystem, ReadsOnlyTheFirstItem) {
  InventoryTree profiler = profiler_with(
      "SPSoftwareDataType", {{{"kernel_version", "Darwin 9"}}, {{"kernel_version", "Darwin 10"}}});
  EXPECT_EQ(other_facts("kernel=Darwin 9\nmanuf=Apple Inc.\n"), collected(collect_os, profiler));
}

TEST(OperatingSystem, WritesNothingWithoutItsDataType) {
  InventoryTree empty = empty_profiler();
  EXPECT_EQ(collected(collect_os, empty), "*Snapshot=\n");
  InventoryTree no_item = profiler_with("SPSoftwareDataType", {});
  EXPECT_EQ(collected(collect_os, no_item), "*Snapshot=\n");
}

}  // namespace
