#include "inv/facts/gaps.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using Gaps = std::vector<std::string>;

Gaps gaps_in_text(const std::string& lines) {
  return inv::gaps_in(*maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n")));
}

const std::string kHardware = "+System=\n*Computer-system=\nmodel=Mac16,8\n-\n";
const std::string kNetwork = "+Network=\n*Adapters=\na=b\n-\n";
const std::string kWhole =
    kHardware + kNetwork +
    "+Storage=\n*Physical-disks=\na=b\n*Logical-disks=\na=b\n-\n+Processors=\n*Processor:1=X\na=b\n-\n";

std::string system_of(const std::string& darwin) {
  return "+OS=\n*os:1=X\nkernel=Darwin " + darwin + "\n-\n";
}

// A scan whose commands ended as these lines say.
Gaps gaps_of_commands(const std::string& commands, const std::string& darwin = "25.1.0") {
  return gaps_in_text(kWhole + system_of(darwin) + "+Scan=\n" + commands + "-\n");
}

TEST(Gaps, ACompleteScanHasNone) {
  EXPECT_EQ(gaps_in_text(kWhole + system_of("10.8.0")), Gaps());
  EXPECT_EQ(gaps_of_commands("*Command:1=sw_vers 2>&1\nrun=1\nexit-status=0\nbytes=63\n"), Gaps());
}

TEST(Gaps, WithoutASnapshotOnlyTheSummaryIsThere) {
  EXPECT_EQ(inv::gaps_in(*maker::open(maker::debug_file("<plist/>"))),
            Gaps{"no snapshot: only the machine's summary"});
}

TEST(Gaps, AProfilerThatSaidNothingIsNamed) {
  EXPECT_EQ(gaps_in_text(""), Gaps{"no profiler output: hardware, network, software unknown"});
  EXPECT_EQ(gaps_in_text(kWhole), Gaps{"no profiler output: software unknown"});
  EXPECT_EQ(gaps_in_text(kNetwork + system_of("10.8.0")), Gaps{"no profiler output: hardware unknown"});
}

TEST(Gaps, ASimpleScanSaysWhatAnExtendedOneWouldKnow) {
  EXPECT_EQ(gaps_in_text(kHardware + kNetwork + system_of("25.1.0")),
            Gaps{"scanned without /extended: disks, processor, volumes"});
  EXPECT_EQ(gaps_in_text(kWhole + system_of("20.6.0") +
                         "+Video=\n+Monitors=\n*Monitor:1=A\nname=A\n*Monitor:2=\nmain-monitor=1\n-\n-\n"),
            Gaps{"scanned without /extended: displays"});
  EXPECT_EQ(gaps_in_text(kWhole + system_of("20.6.0") + "+Video=\n+Monitors=\n*Monitor:1=A\nname=A\n-\n-\n"),
            Gaps());
}

TEST(Gaps, ATroubledCommandIsNamedWithItsReason) {
  const auto gap = [](const std::string& record) {
    return gaps_of_commands("*Command:1=system_profiler -detailLevel full -xml SPNVMeDataType\n" + record);
  };
  EXPECT_EQ(gap("run=0\n"), Gaps{"left out, since the limits of the scan were used up: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=9\nmissing=1\n"), Gaps{"not on this Mac: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=9\nrefused=1\n"), Gaps{"refused without administrator rights: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=9\nsalvaged=1\n"),
            Gaps{"damaged, and read as far as possible: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=9\ncut=1\n"), Gaps{"cut off, since it printed without end: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=0\nsilent=1\n"), Gaps{"given up, since it said nothing: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=0\nsignal=11\n"), Gaps{"ended by a signal: SPNVMeDataType"});
  EXPECT_EQ(gap("run=1\nbytes=0\nexit-status=0\n"), Gaps{"no answer: SPNVMeDataType"});
}

TEST(Gaps, CommandsWithTheSameReasonAreGrouped) {
  EXPECT_EQ(gaps_of_commands("*Command:1=ioreg -rd1\nbytes=0\n*Command:2=sw_vers 2>&1\nmissing=1\n"
                             "*Command:3=fdesetup status\nmissing=1\n"),
            (Gaps{"not on this Mac: sw_vers, fdesetup", "no answer: ioreg"}));
}

TEST(Gaps, AToolThatTheSystemNeverHadIsNotMissed) {
  const auto gaps = [](const std::string& tool, const std::string& darwin) {
    return gaps_of_commands("*Command:1=" + tool + " status\nmissing=1\n", darwin).size();
  };
  EXPECT_EQ(gaps("fdesetup", "11.4.2"), 0u);
  EXPECT_EQ(gaps("fdesetup", "12.0.0"), 1u);
  EXPECT_EQ(gaps("csrutil", "14.5.0"), 0u);
  EXPECT_EQ(gaps("csrutil", "15.0.0"), 1u);
  EXPECT_EQ(gaps("profiles", "16.7.0"), 0u);
  EXPECT_EQ(gaps("profiles", "17.5.0"), 1u);
  EXPECT_EQ(gaps("sw_vers", "8.11.0"), 1u);
  EXPECT_EQ(gaps("csrutil", "unknown"), 1u);
}

}  // namespace
