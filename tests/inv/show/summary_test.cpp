#include "inv/show/summary.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "inv/base/utf8.h"
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

TEST(Summary, LeavesOutWhatIsUnknown) {
  inv::Overview overview;
  overview.name = "Office Mac";
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()), "Office Mac\n");
  EXPECT_EQ(inv::summary_table({overview}, inv::Terminal()),
            "Machine     Model  Serial  System  Memory  Disk  Scanned\nOffice Mac\n");
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

TEST(Summary, SlotsAreShownEvenWithoutASize) {
  inv::Overview overview;
  overview.memory.slots = {{"BANK 0", 2048, "DDR3"}};
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()), "\nMemory        \u2588  1 of 1 slot filled\n");
}

TEST(Summary, NamesTheSignerIfSignaturesAreChecked) {
  inv::Overview overview;
  overview.name = "Office Mac";
  overview.signed_by = "imac@\x1Bstudio";
  EXPECT_EQ(inv::summary_screen(overview, inv::Terminal()), "Office Mac\nSigned by     imac@\uFFFDstudio\n");
  EXPECT_EQ(inv::summary_table({inv::Overview(), overview}, inv::Terminal()),
            "Machine     Model  Serial  System  Memory  Disk  Scanned  Signed by\n\n"
            "Office Mac                                                imac@\uFFFDstudio\n");
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
  EXPECT_EQ(inv::summary_table({office_mac(), other}, inv::Terminal()),
            "Machine     Model     Serial        System          Memory    Disk  Scanned\n"
            "Office Mac  iMac11,1  C02TEST00001  Mac OS X v10.6                  2012-01-18\n"
            "B           iMac11,1  C02TEST00001  Mac OS X v10.6          1.0 TB  2012-01-18\n");
}

inv::Overview named(const std::string& name, const std::string& file) {
  inv::Overview overview;
  overview.name = name;
  overview.file = file;
  return overview;
}

TEST(Summary, ATableNamesTheFilesOnlyWhereNamesRepeat) {
  EXPECT_EQ(inv::summary_table({named("A", "a.inv"), named("B", "b.inv")}, {}).find("File"),
            std::string::npos);
  EXPECT_EQ(inv::summary_table({named("A", "a.inv"), named("B", "b.inv"), named("A", "c\x1B.inv")}, {}),
            "File    Machine  Model  Serial  System  Memory  Disk  Scanned\n"
            "a.inv   A\n"
            "b.inv   B\n"
            "c\uFFFD.inv  A\n");
}

TEST(Summary, ATableFitsTheTerminal) {
  inv::Overview overview = office_mac();
  overview.file = "/Volumes/Spool/2012/" + std::string(60, 'x') + "/monday.inv";
  overview.name = overview.model = std::string(70, 'n');
  overview.os = "Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549)";
  for (const size_t width : {80u, 100u, 160u}) {
    inv::Terminal terminal;
    terminal.width = width;
    const std::string table = inv::summary_table({overview, overview}, terminal);
    const std::string row = table.substr(table.rfind('\n', table.size() - 2) + 1);
    EXPECT_EQ(inv::columns(row.substr(0, row.size() - 1)), width) << row;
    EXPECT_EQ(row.rfind("\u2026", 0), 0u) << row;
    EXPECT_NE(row.find("y.inv  n"), std::string::npos) << row;
    EXPECT_NE(row.find("  C02TEST00001  10.6.8"), std::string::npos) << row;
    EXPECT_NE(row.find("  2012-01-18\n"), std::string::npos) << row;
  }
}

// The names of these, sorted by a column.
std::string sorted(std::vector<inv::Overview> overviews, std::string_view column) {
  inv::sort_overviews(overviews, column);
  std::string names;
  for (const inv::Overview& overview : overviews) names += overview.name;
  return names;
}

TEST(Summary, SortsByEachColumnWithUnknownValuesLast) {
  std::vector<inv::Overview> all = {named("C", ""), named("A", ""), named("B", ""), named("D", "")};
  EXPECT_EQ(sorted(all, "name"), "ABCD");
  EXPECT_EQ(sorted(all, "memory"), "CABD");
  all[1].model = all[1].serial = "y";
  all[2].model = all[2].serial = "x";
  EXPECT_EQ(sorted(all, "model"), "BACD");
  EXPECT_EQ(sorted(all, "serial"), "BACD");
  all[1].os = "Mac OS X v10.11, 10.11.6 (15G31)";
  all[2].os = "Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549)";
  all[3].os = "macOS 15.3 (24D60)";
  EXPECT_EQ(sorted(all, "system"), "BADC");
  all[1].memory.megabytes = 16384;
  all[3].memory.megabytes = 8192;
  EXPECT_EQ(sorted(all, "memory"), "DACB");
  all[1].disks.resize(2);
  all[1].disks[0].bytes = all[1].disks[1].bytes = 500;
  all[2].disks.resize(1);
  all[2].disks[0].bytes = 600;
  EXPECT_EQ(sorted(all, "disk"), "BACD");
  all[2].time = "2012-01-18T13:30:45Z";
  all[3].time = "2012-01-18T13:30:46Z";
  EXPECT_EQ(sorted(all, "age"), "DBCA");
}

TEST(Summary, KeepsTheOrderOfTheFilesUnlessAskedToSort) {
  EXPECT_EQ(sorted({named("C", ""), named("A", "")}, ""), "CA");
  EXPECT_EQ(inv::sort_names(),
            (std::vector<std::string_view>{"name", "model", "serial", "system", "memory", "disk", "age"}));
}

TEST(Summary, JsonHasOneObjectForEachFile) {
  inv::Overview overview = office_mac();
  overview.file = "monday.inv";
  overview.volumes[0].knows_free = true;
  overview.memory.megabytes = 2048;
  overview.gaps = {"no answer: ioreg"};
  const auto list = nlohmann::json::parse(inv::summary_json({overview, inv::Overview()}));
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0]["file"], "monday.inv");
  EXPECT_EQ(list[0]["name"], "Office Mac");
  EXPECT_EQ(list[0]["serial"], "C02TEST00001");
  EXPECT_EQ(list[0]["scanned_at"], "2012-01-18T13:30:45Z");
  EXPECT_EQ(list[0]["memory"]["megabytes"], 2048);
  EXPECT_EQ(list[0]["volumes"][0]["name"], "Macintosh HD");
  EXPECT_EQ(list[0]["volumes"][0]["free_bytes"], 0);
  EXPECT_EQ(list[0]["counts"]["applications"], 2);
  EXPECT_EQ(list[0]["missing"][0], "no answer: ioreg");
  EXPECT_FALSE(list[1].contains("serial"));
  EXPECT_FALSE(list[1].contains("counts"));
  EXPECT_EQ(list[1]["disks"], nlohmann::json::array());
  EXPECT_EQ(list[1]["missing"], nlohmann::json::array());
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
