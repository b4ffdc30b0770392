#include "inv/show/summary.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

inv::Overview office_mac() { return inv::overview_of(*maker::open(maker::file())); }

TEST(Summary, DescribesAMachineLineByLine) {
  inv::Overview overview = office_mac();
  overview.memory.slots = {{"BANK 0", 2048, "DDR3"}, {"BANK 1", 0, ""}};
  overview.memory.megabytes = 2048;
  overview.volumes[0].knows_free = true;
  overview.volumes[0].free_bytes = 249750000000;
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()),
            "Office Mac\n"
            "Model         iMac11,1\n"
            "Serial        C02TEST00001\n"
            "System        Mac OS X v10.6 (Snow Leopard)\n"
            "Scanned       2012-01-18 15:30:45 +02:00\n"
            "Processor     Intel Core i7, 4 cores\n"
            "Memory        2 GB  \u2588\u2591  1 of 2 slots filled\n"
            "Volumes       Macintosh HD  \u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588"
            "\u2591\u2591\u2591\u2591\u2591\u2591\u2591\u2591\u2591\u2591  50 % of 500 GB, 250 GB free\n"
            "Contents      2 applications, 0 accounts, 0 processes, 0 printers, 0 USB devices\n"
            "Missing       no profiler output: network, software unknown\n"
            "              scanned without /extended: disks\n");
}

TEST(Summary, SaysNothingOfWhatIsNotKnown) {
  inv::Overview overview;
  overview.name = "Office Mac";
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()), "Office Mac\n");
  EXPECT_EQ(inv::summary_table({overview}),
            "Machine     Model  Serial  System  Memory  Disks  Applications  Scanned\nOffice Mac\n");
  overview.volumes = {
      {"A", "", "", 0, 5000, true, ""}, {"B", "", "", 5000, 0, false, ""}, {"C", "", "", 0, 0, false, ""}};
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()),
            "Office Mac\n"
            "Volumes       A  5.0 KB free\n"
            "              B  5.0 KB\n"
            "              C\n");
}

TEST(Summary, ShowsSharedSpaceOnce) {
  inv::Overview overview;
  overview.volumes = {{"HD", "", "", 1000, 500, true, "disk3"},
                      {"Data", "", "", 1000, 500, true, "disk3"},
                      {"USB", "", "", 0, 0, false, ""},
                      {"SD", "", "", 0, 0, false, ""}};
  const std::string screen = inv::summary_screen(overview, inv::Terminal());
  EXPECT_NE(screen.find("50 % of 1.0 KB, 500 B free\n              Data  shares this space\n"
                        "              USB\n              SD\n"),
            std::string::npos)
      << screen;
}

TEST(Summary, EndsWithWhatIsMissing) {
  inv::Overview overview;
  overview.firewall = "on";
  overview.management = "not enrolled in MDM";
  overview.battery = {"condition Good", "61 cycles"};
  overview.gaps = {"no profiler output: hardware unknown", "no answer: ioreg"};
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()),
            "\n"
            "Battery       condition Good, 61 cycles\n"
            "Firewall      on\n"
            "Management    not enrolled in MDM\n"
            "Missing       no profiler output: hardware unknown\n"
            "              no answer: ioreg\n");
}

TEST(Summary, PutsAsMuchAboutSecurityOnALineAsFits) {
  inv::Overview overview;
  overview.security = {std::string(40, 'a'), std::string(24, 'b'), "c"};
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()),
            "\nSecurity      " + overview.security[0] + ", " + overview.security[1] + "\n              c\n");
}

TEST(Summary, SlotsStandWithoutASizeToo) {
  inv::Overview overview;
  overview.memory.slots = {{"BANK 0", 2048, "DDR3"}};
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()), "\nMemory        \u2588  1 of 1 slot filled\n");
}

TEST(Summary, SaysWhoSignedWhenSomebodyAsked) {
  inv::Overview overview;
  overview.name = "Office Mac";
  overview.signed_by = "imac@\x1Bstudio";
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()), "Office Mac\nSigned by     imac@\uFFFDstudio\n");
  EXPECT_EQ(inv::summary_table({inv::Overview(), overview}),
            "Machine     Model  Serial  System  Memory  Disks  Applications  Scanned  Signed by\n\n"
            "Office Mac                                                               imac@\uFFFDstudio\n");
}

TEST(Summary, KeepsToOneScreen) {
  inv::Overview overview = office_mac();
  overview.adapters.resize(50, {"Ethernet", "en0", "", ""});
  overview.volumes.resize(50);
  const std::string screen = inv::summary_screen(overview, inv::Terminal());
  EXPECT_LT(std::count(screen.begin(), screen.end(), '\n'), 40);
  EXPECT_NE(screen.find("and 42 more"), std::string::npos);
}

TEST(Summary, ShortensLinesToTheTerminal) {
  inv::Overview overview = office_mac();
  overview.processor.name = std::string(200, 'x');
  inv::Terminal terminal;
  terminal.interactive = true;
  terminal.width = 60;
  EXPECT_NE(inv::summary_screen(overview, terminal).find(std::string(45, 'x') + "\u2026\n"),
            std::string::npos);
}

TEST(Summary, DisarmsNames) {
  inv::Overview overview = office_mac();
  overview.name = "\x1B]0;owned\x07";
  overview.volumes[0].name = "a\nb";
  const std::string screen = inv::summary_screen(overview, inv::Terminal());
  EXPECT_EQ(screen.find('\x1B'), std::string::npos);
  EXPECT_EQ(screen.find("a\nb"), std::string::npos);
}

TEST(Summary, SeveralMachinesAreATable) {
  inv::Overview other = office_mac();
  other.name = "B";
  other.disks = {{"HDD", "", "", "", 500000000000, "", ""}, {"HDD", "", "", "", 500000000000, "", ""}};
  EXPECT_EQ(inv::summary_table({office_mac(), other}),
            "Machine     Model     Serial        System                         Memory   Disks  Applications "
            " Scanned\n"
            "Office Mac  iMac11,1  C02TEST00001  Mac OS X v10.6 (Snow Leopard)                             2 "
            " 2012-01-18 "
            "15:30:45 +02:00\n"
            "B           iMac11,1  C02TEST00001  Mac OS X v10.6 (Snow Leopard)          1.0 TB             2 "
            " 2012-01-18 "
            "15:30:45 +02:00\n");
}

TEST(Summary, CountsTheLinesItHasNoRoomForAndNoOthers) {
  inv::Overview overview;
  overview.adapters.resize(9, {"Ethernet", "en0", "", ""});
  EXPECT_NE(inv::summary_screen(overview, inv::Terminal()).find("\n              and 1 more\n"),
            std::string::npos);
  overview.adapters.pop_back();
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()).find(" more\n"), std::string::npos);
}

std::string bar_of_volume_used(unsigned percent, const inv::Terminal& terminal = {}) {
  inv::Overview overview;
  overview.volumes.push_back({"HD", "", "", 1000, 1000 - 10 * percent, true, ""});
  return inv::summary_screen(overview, terminal);
}

TEST(Summary, RoundsABarToTheNearestCell) {
  const auto cells = [](unsigned percent) {
    size_t count = 0;
    const std::string screen = bar_of_volume_used(percent), cell = "\u2588";
    for (size_t at = screen.find(cell); at != screen.npos; at = screen.find(cell, at + 1)) ++count;
    return count;
  };
  EXPECT_EQ(cells(52), 10u);
  EXPECT_EQ(cells(53), 11u);
  EXPECT_EQ(cells(100), 20u);
}

TEST(Summary, DrawsAVolumeInRedFromNinetyPercentOn) {
  inv::Terminal terminal;
  terminal.colour = true;
  EXPECT_NE(bar_of_volume_used(90, terminal).find("\x1B[31m"), std::string::npos);
  EXPECT_EQ(bar_of_volume_used(89, terminal).find("\x1B[31m"), std::string::npos);
}

}  // namespace
