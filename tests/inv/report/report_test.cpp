#include "inv/report/report.h"

#include <gtest/gtest.h>

#include "inv/base/base64.h"
#include "inv/maker.h"
#include "inv/report/page.h"
#include "inv/report/report_tables.h"

namespace {

bool holds(const std::string& page, const std::string& text) { return page.find(text) != std::string::npos; }

size_t count(const std::string& page, const std::string& text) {
  size_t times = 0;
  for (size_t at = page.find(text); at != std::string::npos; at = page.find(text, at + 1)) ++times;
  return times;
}

std::string report_page(const inv::Inventory& inventory) {
  return maker::written([&](const inv::TextSink& sink) { inv::report_page(inventory, sink); });
}

std::string comparison_page(const inv::Inventory& old_inventory, const inv::Inventory& new_inventory) {
  return maker::written(
      [&](const inv::TextSink& sink) { inv::comparison_page(old_inventory, new_inventory, sink); });
}

TEST(Report, ShowsCardsAndTables) {
  const std::string page = report_page(*maker::open(maker::file()));
  EXPECT_TRUE(holds(page, "<title>Office Mac</title>"));
  EXPECT_TRUE(holds(page, "<h3>Processor</h3><p><bdi>Intel Core i7</bdi></p><p><bdi>4 cores</bdi></p>"));
  EXPECT_TRUE(holds(page, "<h2>Applications <span class=\"count\">2</span></h2>"));
  EXPECT_TRUE(holds(page, "<td><bdi>Safari</bdi></td><td><bdi>5.1.9</bdi></td>"));
  EXPECT_FALSE(holds(page, "<h2>Printers"));
}

TEST(Report, DrawsMemoryAndVolumes) {
  const std::string page = report_page(*maker::open(maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n+Snapshot=\n+Memory=\n*Memory-slot:1=\nused=1\ncapacity=2048\nmem-type=DDR3\n"
      "*Memory-slot:2=\nused=0\n-\n+Storage=\n+Logical-disks=\n*partition:1=HD\nsize=100\nfree=25\n-\n-\n-"
      "\n")));
  EXPECT_TRUE(holds(page, "aria-label=\"1 of 2 memory slots are filled\""));
  EXPECT_TRUE(holds(page, "aria-label=\"75 percent used\""));
  EXPECT_TRUE(holds(page, "75 % of 100 GB, 25 GB free"));
}

std::string page_of(const std::string& lines) {
  return report_page(*maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n")));
}

TEST(Report, DrawsOneBarForVolumesThatShareTheirSpace) {
  const std::string page = page_of(
      "+Storage=\n+Logical-disks=\n*partition:1=HD\ncontainer=disk3\nsize=100\nfree=25\n"
      "*partition:2=Data\ncontainer=disk3\nsize=100\nfree=25\n*partition:3=Stick\nsize=10\nfree=5\n"
      "*partition:4=Card\nsize=10\nfree=5\n-\n-\n");
  EXPECT_EQ(count(page, "percent used"), 3u);
  EXPECT_TRUE(holds(page, "<span><bdi>HD</bdi>, <bdi>Data</bdi></span>"));
  EXPECT_TRUE(holds(page, "<p><bdi>4 volumes</bdi></p><p><bdi>35 GB of 120 GB free</bdi></p>"));
}

TEST(Report, DrawsNoSlotsWhenNoneTellsItsState) {
  const std::string page =
      page_of("+Memory=\n*Memory-slot:1=\nused=0\n*General-info=\nphysical-memory=49152\n-\n");
  EXPECT_FALSE(holds(page, "class=\"memory\""));
  EXPECT_TRUE(holds(page, "<h3>Memory</h3><p><bdi>48 GB</bdi></p>"));
}

TEST(Report, TwoProcessorsAreTwo) {
  EXPECT_TRUE(
      holds(page_of("+Processors=\n*Processor:1=Xeon\ncore-count=8\n*Processor:2=Xeon\ncore-count=8\n-\n"),
            "<h3>Processor</h3><p><bdi>2 x Xeon</bdi></p><p><bdi>8 cores</bdi></p>"));
}

TEST(Report, ADisplayWithoutFactsIsALineOfItsOwn) {
  EXPECT_TRUE(
      holds(page_of("+Video=\n+Monitors=\n*Monitor:1=\nmodel=ZL 1720\n*Monitor:2=\nmain-monitor=1\n-\n-\n"),
            "<h3>Displays</h3><p><bdi>ZL 1720</bdi></p><p><bdi>display, no details reported</bdi></p>"));
}

TEST(Report, HasACardForSecurityAndOneForWhatIsMissing) {
  const std::string page = page_of(
      "+Security=\n*Firewall=\nstatus=2\n*Platform=\nfilevault=0\nmdm-enrolled=0\n-\n*Battery=\ncycle-count="
      "3\n");
  EXPECT_TRUE(holds(page,
                    "<h3>Security</h3><p><bdi>FileVault off</bdi></p><p><bdi>firewall on, blocks all "
                    "connections</bdi></p><p><bdi>not enrolled in MDM</bdi></p>"));
  EXPECT_TRUE(holds(page, "<h3>Battery</h3><p><bdi>3 cycles</bdi></p>"));
  EXPECT_TRUE(holds(page, "<h3>Missing</h3><p><bdi>no profiler output: hardware, network, software unknown"));
}

TEST(Report, AllowsItsOwnStyleAndScriptOnly) {
  const std::string page = report_page(*maker::open(maker::file()));
  EXPECT_TRUE(holds(page, "default-src 'none'; style-src 'sha256-" +
                              inv::base64(inv::sha256(inv::kPageStyle)) + "'; script-src 'sha256-" +
                              inv::base64(inv::sha256(inv::kPageScript)) +
                              "'; base-uri 'none'; form-action 'none'"));
  EXPECT_TRUE(holds(page, "<script>" + std::string(inv::kPageScript) + "</script>"));
  for (const char* outside : {"http://", "https://", "src=", "url(", "@import", " style=", " onclick="}) {
    EXPECT_FALSE(holds(page, outside)) << outside;
  }
}

TEST(Report, ValuesStayText) {
  const std::string page = report_page(*maker::open(maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=<script>alert(1)</script>{{script}}\n+Software=\n"
      "*Soft:1=\"><img src=x onerror=alert(1)>\nlocation=</table></style>\n-\n-\n")));
  EXPECT_EQ(count(page, "<script>"), 1u);
  EXPECT_EQ(count(page, "<img"), 0u);
  EXPECT_EQ(count(page, "</style>"), 1u);
  EXPECT_TRUE(holds(page, "<title>&lt;script&gt;alert(1)&lt;/script&gt;{{script}}</title>"));
  EXPECT_TRUE(holds(page, "<h1><bdi>&lt;script&gt;alert(1)&lt;/script&gt;{{script}}</bdi></h1>"));
}

TEST(Report, AListOfContentsLeadsToTheSectionsInTheirOrder) {
  const std::string page = page_of(
      "+Memory=\n*Memory-slot:1=\nused=1\ncapacity=2048\n-\n"
      "+Software=\n*Soft:1=<h2>A\nversion=1\n-\n+Network=\n+Adapters=\n*adapter:1=Ethernet\n-\n-\n");
  EXPECT_TRUE(holds(page,
                    "<nav class=\"contents\" aria-label=\"Contents\"><ul>\n"
                    "<li><a href=\"#memory\">Memory</a></li>\n"
                    "<li><a href=\"#network-adapters\">Network adapters</a></li>\n"
                    "<li><a href=\"#memory-slots\">Memory slots</a></li>\n"
                    "<li><a href=\"#applications\">Applications</a></li>\n</ul></nav>"));
  EXPECT_FALSE(holds(page_of("hostname=A\n"), "<nav"));
}

TEST(Report, TheHeadingLeavesOutWhatIsNotKnown) {
  EXPECT_TRUE(holds(report_page(*maker::open(maker::file())),
                    "<p><bdi>iMac11,1</bdi> &middot; <bdi>C02TEST00001</bdi> &middot; scanned "
                    "<time>2012-01-18 15:30:45 +02:00</time></p>"));
  EXPECT_TRUE(
      holds(report_page(*maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=A\n"))),
            "<header><h1><bdi>A</bdi></h1><p></p></header>"));
}

TEST(Report, SpellsOutDatesAndYesAndNo) {
  const std::string page = report_page(*maker::open(maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n+Snapshot=\n+Software=\n*Soft:1=A\ninst-date=20110102\n64bit-app=1\n"
      "*Soft:2=B\ninst-date=soon\n64bit-app=0\n*Soft:3=C\ninst-date=2011<b>2\n64bit-app=2\n-\n-\n")));
  EXPECT_TRUE(holds(page, "<td class=\"date\"><bdi>2011-01-02</bdi></td><td>yes</td>"));
  EXPECT_TRUE(holds(page, "<td class=\"date\"><bdi>soon</bdi></td><td>no</td>"));
  EXPECT_TRUE(holds(page, "<td class=\"date\"><bdi>2011&lt;b&gt;2</bdi></td><td><bdi>2</bdi></td>"));
}

TEST(Report, AZeroThatMeansNothingIsLeftOut) {
  const std::string page =
      page_of("+Video=\n+Video-devices=\n*Video-adapter:1=A\nram=0\n*Video-adapter:2=B\nram=256\n-\n-\n");
  EXPECT_TRUE(holds(page, "<td><bdi>A</bdi></td><td class=\"number\"></td>"));
  EXPECT_TRUE(holds(page, "<td><bdi>B</bdi></td><td class=\"number\"><bdi>256</bdi></td>"));
}

TEST(Report, AColumnInWhichNothingIsToldIsLeftOut) {
  const std::string page = page_of("+Software=\n*Soft:1=A\nversion=1\n*Soft:2=B\n-\n");
  EXPECT_TRUE(holds(page, "<th scope=\"col\">Name</th><th scope=\"col\">Version</th></tr>"));
}

TEST(Report, ApplicationsHaveTheDetailsOfTheirOwnNumber) {
  const std::string page = page_of(
      "+Software=\n*Soft:1=A\nversion=1\n*Soft:2=B\nversion=2\n-\n"
      "+Software-details=\n*Soft:2=\narchitecture=arch_arm_i64\nsource=mac_app_store\nsigned-by=X\n-\n");
  EXPECT_TRUE(holds(
      page,
      "<td><bdi>B</bdi></td><td><bdi>2</bdi></td><td><bdi>Universal</bdi></td><td><bdi>App Store</bdi></td>"
      "<td><bdi>X</bdi></td>"));
  EXPECT_TRUE(holds(page, "<td><bdi>A</bdi></td><td><bdi>1</bdi></td><td></td><td></td><td></td>"));
}

TEST(Report, DisksHaveWhatStandsInTheirListOrBesideIt) {
  const std::string page = page_of(
      "+Storage=\n+Physical-disks=\n*HDD:1=\nmodel=A\n*HDD:2=\nmodel=B\nmedium=ssd\n*Removable:1=\nmodel=C\n-"
      "\n"
      "+Details=\n*HDD:1=\nmedium=Rotational\n-\n-\n");
  EXPECT_TRUE(holds(page, "<td><bdi>A</bdi></td><td><bdi>hard disk</bdi></td>"));
  EXPECT_TRUE(holds(page, "<td><bdi>B</bdi></td><td><bdi>SSD</bdi></td>"));
  EXPECT_TRUE(holds(page, "<td><bdi>C</bdi></td><td></td>"));
}

TEST(Report, TellsWhenPackagesWereInstalledAndWhatWakesTheMac) {
  const std::string page = page_of(
      "+Packages=\n*Package:1=Notes\nversion=4.2\ninstall-date=20260114081451.000000+0\nsource=package_"
      "source_apple\n-\n"
      "+System=\n+PowerManagement=\n*Profile:1=AC "
      "Power\nwake-on-lan=1\n*Profile:2=Battery\nwake-on-lan=0\n-\n-\n");
  EXPECT_TRUE(holds(page,
                    "<td><bdi>4.2</bdi></td><td class=\"date\"><bdi>2026-01-14 08:14:51 "
                    "+00:00</bdi></td><td><bdi>Apple</bdi></td>"));
  EXPECT_TRUE(holds(page, "<td><bdi>AC Power</bdi></td><td>yes</td>"));
  EXPECT_TRUE(holds(page, "<td><bdi>Battery</bdi></td><td>no</td>"));
}

TEST(Report, ADebugFileHasAPageToo) {
  EXPECT_TRUE(
      holds(report_page(*maker::open(maker::debug_file("<plist/>"))), "<h1><bdi>Office Mac</bdi></h1>"));
}

TEST(Report, ComparisonListsTheChanges) {
  const std::string other = maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n+Snapshot=\n+Software=\n*Soft:1=<b>New</b>\nlocation=/x\n-\n-\n");
  const std::string page = comparison_page(*maker::open(maker::file()), *maker::open(other));
  EXPECT_TRUE(holds(
      page,
      "<span class=\"added\">added</span></td><td><bdi>Application</bdi></td><td><bdi>Application added: "
      "&lt;b&gt;New&lt;/b&gt; (/x)</bdi>"));
  EXPECT_TRUE(holds(page, "role=\"note\">Note: <bdi>these are two different machines: "));
  EXPECT_TRUE(holds(page, " changes since <time>2012-01-18 15:30:45 +02:00</time>"));
  const std::string same = comparison_page(*maker::open(other), *maker::open(other));
  EXPECT_TRUE(holds(same, "0 changes since"));
  EXPECT_FALSE(holds(same, "<table>"));
  EXPECT_FALSE(holds(same, "role=\"note\""));
}

// What of a part is not kept but written.
std::string rest_of(const inv::PagePart& part) {
  return maker::written([&](const inv::TextSink& sink) { part.rest(sink); });
}

// A table of three rows of a cell of ten bytes each.
std::string three_rows(size_t most_bytes) {
  return rest_of(inv::table_part(
      "Things", {{"Name", ""}}, 3,
      [](size_t i) { return std::vector<std::string>(1, "0123456789" + std::string(i, 'x')); }, most_bytes));
}

constexpr size_t kFirstRow = sizeof(std::string) + 10;
constexpr size_t kTwoRows = kFirstRow + kFirstRow + 1;

TEST(Report, RowsBeyondWhatAPageHoldsAreCounted) {
  EXPECT_EQ(count(three_rows(kTwoRows + 1), "<tr>"), 3U);
  EXPECT_FALSE(holds(three_rows(kTwoRows + 1), "left out"));
  EXPECT_EQ(count(three_rows(kTwoRows), "<tr>"), 2U);
  EXPECT_TRUE(holds(three_rows(kTwoRows),
                    "</table></div>\n<p>1 more is left out: the page would be too large.</p>\n</section>\n"));
  EXPECT_EQ(count(three_rows(kFirstRow), "<tr>"), 1U);
  EXPECT_TRUE(holds(three_rows(kFirstRow), "<p>2 more are left out: "));
  EXPECT_EQ(count(three_rows(kFirstRow + 1), "<tr>"), 2U);
}

TEST(Report, ATableSaysOfHowManyRowsItIs) {
  const auto part = inv::table_part("Things", {{"Name", ""}}, 3, nullptr, 0);
  EXPECT_TRUE(holds(part.beginning, "<h2>Things <span class=\"count\">3</span></h2>"));
  EXPECT_TRUE(holds(rest_of(part), "<p>3 more are left out: "));
}

TEST(Report, TheTablesOfAPageShareWhatItHolds) {
  const auto inventory = maker::open(
      maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n+Network=\n+Adapters=\n*adapter:1=Ethernet\n-\n-\n"
                          "+Software=\n*Soft:1=A\n*Soft:2=B\n-\n-\n"));
  const auto rows = [&](size_t most_bytes) {
    size_t sum = 0;
    for (const inv::PagePart& part : inv::report_tables(inventory->snapshot_top(), most_bytes)) {
      sum += count(rest_of(part), "<tr>");
    }
    return sum;
  };
  EXPECT_EQ(inv::kMostCellBytes, 64U << 20);
  EXPECT_EQ(rows(inv::kMostCellBytes), 3U);
  EXPECT_EQ(rows(1), 1U);
  const size_t adapter = sizeof(std::string) + std::string("<bdi>Ethernet</bdi>").size();
  EXPECT_EQ(rows(adapter), 1U);
  EXPECT_EQ(rows(adapter + 1), 2U);
}

}  // namespace
