#include "inv/export/tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "inv/export/export.h"
#include "inv/maker.h"

namespace {

using inv::Cell;
using inv::CellType;
using testing::ElementsAre;
using testing::HasSubstr;

using Row = std::map<std::string, Cell>;

std::string snapshot_of(const std::string& lines) {
  return maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\ntimestamp=20120118153045.000000+120\n" + lines +
                             "-\n");
}

// The rows of a table, by the names of the columns; what is the same in all tables is left out.
std::vector<Row> rows_of_file(const std::string& table_name, const std::string& file) {
  const inv::TypedTable& table = *inv::find_table(table_name);
  const inv::RowKind kind = inv::row_kind_of(table);
  const auto inventory = maker::open(file);
  std::vector<Row> rows;
  inv::each_row(table, *inventory, inv::scan_of(*inventory), [&](const std::vector<Cell>& cells) {
    EXPECT_EQ(cells.size(), kind.columns.size());
    Row row;
    for (size_t i = 0; i < cells.size(); ++i) row[std::string(kind.columns[i].name)] = cells[i];
    rows.push_back(row);
  });
  return rows;
}

std::vector<Row> rows_of(const std::string& table, const std::string& lines) {
  return rows_of_file(table, snapshot_of(lines));
}

// The cells that are not empty, except for the columns that all tables have.
std::map<std::string, std::string> filled(const Row& row) {
  std::map<std::string, std::string> cells;
  for (const auto& [name, cell] : row) {
    const bool is_common = name == "scan_id" || name == "scanned_at" || name == "machine" || name == "path";
    if (cell && !is_common) cells[name] = *cell;
  }
  return cells;
}

using Filled = std::map<std::string, std::string>;

// One cell of a table's only row.
Cell cell(const std::string& table, const std::string& column, const std::string& lines) {
  const std::vector<Row> rows = rows_of(table, lines);
  EXPECT_EQ(rows.size(), 1u);
  return rows.front().at(column);
}

std::string exported(const std::string& table, inv::ExportFormat format,
                     const std::vector<std::string>& files, inv::Formulas formulas = inv::Formulas::kept) {
  char* text = nullptr;
  size_t length = 0;
  std::FILE* stream = open_memstream(&text, &length);
  inv::Exporter exporter({format, formulas, false, inv::find_table(table)}, stream);
  exporter.begin();
  for (const std::string& file : files) exporter.add(*maker::open(file));
  exporter.end();
  std::fclose(stream);
  const std::string result(text, length);
  std::free(text);
  return result;
}

TEST(Tables, AreElevenAndKnownByTheirNames) {
  EXPECT_THAT(inv::table_names(),
              ElementsAre("machines", "software", "disks", "volumes", "memory", "displays", "adapters",
                          "accounts", "processes", "packages", "security"));
  EXPECT_EQ(inv::find_table("disks")->name, "disks");
  EXPECT_EQ(inv::find_table("disk"), nullptr);
  EXPECT_EQ(inv::find_table(""), nullptr);
}

TEST(Tables, BeginWithTheScanSoThatTheyJoin) {
  for (const inv::TypedTable& table : inv::typed_tables()) {
    const inv::RowKind kind = inv::row_kind_of(table);
    ASSERT_GT(kind.columns.size(), 5u);
    EXPECT_EQ(kind.name, table.name);
    const std::vector<std::string_view> names = {kind.columns[0].name, kind.columns[1].name,
                                                 kind.columns[2].name, kind.columns[3].name};
    EXPECT_THAT(names, ElementsAre("scan_id", "scanned_at", "machine", "path"));
    EXPECT_EQ(kind.columns[1].type, CellType::time);
    EXPECT_FALSE(kind.columns[1].always);
    EXPECT_TRUE(kind.columns[0].always && kind.columns[2].always && kind.columns[3].always);
    EXPECT_FALSE(kind.columns[4].always);
  }
}

TEST(Tables, EveryRowSaysOfWhichScanAndWhereItIs) {
  const std::string file = snapshot_of("+System=\n*Chassis=\nserial=SIM1\n-\n+Software=\n*Soft:7=Chess\n-\n");
  const Row row = rows_of_file("software", file).front();
  EXPECT_EQ(row.at("scan_id"), inv::scan_of(*maker::open(file)).id);
  EXPECT_EQ(row.at("scanned_at"), "2012-01-18T13:30:45Z");
  EXPECT_EQ(row.at("machine"), "SIM1");
  EXPECT_EQ(row.at("path"), "/Software/Soft:7");
}

TEST(Tables, AScanWithoutATimeHasNone) {
  const std::string file =
      maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n+Software=\n*Soft:1=Chess\n-\n-\n");
  EXPECT_EQ(rows_of_file("software", file).front().at("scanned_at"), std::nullopt);
}

TEST(Tables, AMachineIsARowOfEveryScan) {
  EXPECT_EQ(filled(rows_of("machines", "hostname=STUDIO\n").at(0)),
            (Filled{{"name", "STUDIO"}, {"hostname", "STUDIO"}}));
  // A debug file has no snapshot.
  const Row row = rows_of_file("machines", maker::debug_file("<plist></plist>")).at(0);
  EXPECT_EQ(row.at("path"), "/");
  EXPECT_EQ(row.at("model"), std::nullopt);
  EXPECT_TRUE(rows_of_file("software", maker::debug_file("<plist></plist>")).empty());
}

TEST(Tables, AMachineIsCalledAsPeopleCallIt) {
  const Row row = rows_of("machines", "hostname=STUDIO\n+System=\n*Chassis=\nserial=SIM1\n-\n").at(0);
  EXPECT_EQ(row.at("machine"), "SIM1");
  EXPECT_EQ(row.at("name"), "STUDIO");
}

TEST(Tables, AMachineHasWhatTheScanSays) {
  const std::string lines =
      "+System=\n*Computer-system=\nmodel=iMac11,1\nuuid=U1\n*Chassis=\nserial=SIM1\n-\n"
      "+Processors=\n*Processor:1=Core i7\ncore-count=4\ncurrent-clock-speed=2800\n-\n"
      "+Memory=\n*General-info=\nphysical-memory=4096\n-\n"
      "+OS=\n*os:1=Snow\nname=Snow\nversion=10.6.8 (10K549)\nuptime=00000002030405.000000:000\n-\n";
  const Filled old = filled(rows_of("machines", lines).at(0));
  EXPECT_EQ(old, (Filled{{"name", "SIM1"},
                         {"model", "iMac11,1"},
                         {"uuid", "U1"},
                         {"serial", "SIM1"},
                         {"processor", "Core i7"},
                         {"cores", "4"},
                         {"processor_mhz", "2800"},
                         {"memory_bytes", "4294967296"},
                         {"system", "Snow"},
                         {"version", "10.6.8 (10K549)"},
                         {"uptime_seconds", "183845"}}));
  const std::string more =
      "*Platform=\nsystem=macOS 26.1 "
      "(25B78)\nsystem-version=26.1\nsystem-build=25B78\nchip=M9\ncore-count=12\n"
      "virtual-machine=0\n";
  const Row row = rows_of("machines", lines + more).at(0);
  EXPECT_EQ(row.at("system"), "macOS 26.1 (25B78)");
  EXPECT_EQ(row.at("version"), "26.1");
  EXPECT_EQ(row.at("build"), "25B78");
  EXPECT_EQ(row.at("processor"), "M9");
  EXPECT_EQ(row.at("cores"), "12");
  EXPECT_EQ(row.at("virtual_machine"), "0");
}

TEST(Tables, AnApplicationHasWhatAnExtendedScanAdds) {
  const std::string lines =
      "+Software=\n*Soft:1=Chess\nversion=2.4\ninst-date=20120118\nlocation=/Applications/Chess.app\n"
      "64bit-app=1\n*Soft:2=Mail\nversion=\n~type=unknown\n-\n"
      "+Software-details=\n*Soft:2=\nsource=apple\n-\n";
  const std::vector<Row> rows = rows_of("software", lines);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(filled(rows[0]), (Filled{{"name", "Chess"},
                                     {"version", "2.4"},
                                     {"modified_on", "2012-01-18"},
                                     {"location", "/Applications/Chess.app"},
                                     {"is_64_bit", "1"}}));
  EXPECT_EQ(filled(rows[1]), (Filled{{"name", "Mail"}, {"source", "apple"}}));
}

TEST(Tables, ADiskIsOneRowWhicheverListsKnowIt) {
  const std::string lines =
      "+Storage=\n+Physical-disks=\n*HDD:1=\nmodel=A\nsize=1000\n~base-value=1000204886016\n*CD:1=\nmodel=B\n"
      "*HDD:2=\nmodel=C\nmedium=ssd\ninternal=1\n*Removable:1=Stick\nsize=8\n-\n"
      "+Details=\n*HDD:1=\nmedium=Rotational\ninternal=0\nbsd-name=disk0\n*HDD:2=\nmedium=other\n-\n-\n";
  const std::vector<Row> rows = rows_of("disks", lines);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(filled(rows[0]), (Filled{{"disk", "HDD:1"},
                                     {"model", "A"},
                                     {"size_bytes", "1000204886016"},
                                     {"medium", "Rotational"},
                                     {"internal", "0"},
                                     {"device", "disk0"}}));
  EXPECT_EQ(filled(rows[1]), (Filled{{"disk", "CD:1"}, {"model", "B"}}));
  EXPECT_EQ(filled(rows[2]),
            (Filled{{"disk", "HDD:2"}, {"model", "C"}, {"medium", "ssd"}, {"internal", "1"}}));
  EXPECT_EQ(filled(rows[3]),
            (Filled{{"disk", "Removable:1"}, {"name", "Stick"}, {"size_bytes", "8000000000"}}));
}

TEST(Tables, AVolumeHasItsBytes) {
  const std::string lines =
      "+Storage=\n+Logical-disks=\n*partition:1=Lab\nsize=899.86\n~base-value=899859808256\nfree=612.33\n"
      "mount-point=/\nused%=31\n-\n+Details=\n*partition:1=\nbsd-name=disk0s2\nwritable=1\n-\n-\n";
  EXPECT_EQ(filled(rows_of("volumes", lines).at(0)), (Filled{{"name", "Lab"},
                                                             {"size_bytes", "899859808256"},
                                                             {"free_bytes", "612330000000"},
                                                             {"mount_point", "/"},
                                                             {"used_percent", "31"},
                                                             {"device", "disk0s2"},
                                                             {"writable", "1"}}));
}

TEST(Tables, MemoryThatIsPartOfTheChipHasTheTypeOfThePlatform) {
  const std::string lines =
      "+Memory=\n*Memory-slot:1=\nused=1\ncapacity=2048\nmem-type=DDR3\nspeed=1067\nmanuf=0x80\nbank-label="
      "B0\n"
      "*Memory-slot:2=\nused=0\n-\n*Platform=\nmemory-type=LPDDR5\n";
  const std::vector<Row> rows = rows_of("memory", lines);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(filled(rows[0]), (Filled{{"slot", "1"},
                                     {"used", "1"},
                                     {"bank", "B0"},
                                     {"capacity_bytes", "2147483648"},
                                     {"type", "DDR3"},
                                     {"speed_mhz", "1067"},
                                     {"manufacturer", "0x80"}}));
  EXPECT_EQ(filled(rows[1]), (Filled{{"slot", "2"}, {"used", "0"}, {"type", "LPDDR5"}}));
}

TEST(Tables, ADisplayThatTwoListsKnowIsOneRow) {
  const std::string monitors =
      "+Video=\n+Monitors=\n+Monitor:1=X\nmodel=Panora\nmain-monitor=1\nid=QXD "
      "A2B\n*max-visible-image-size=\n"
      "diagonal=24\n*manufacture-date=\nmanufacture-year=2009\n-\n*Monitor:3=\nmodel=Wall\n-\n";
  const std::vector<Row> plain = rows_of("displays", monitors + "-\n");
  ASSERT_EQ(plain.size(), 2u);
  EXPECT_EQ(filled(plain[0]), (Filled{{"display", "1"},
                                      {"model", "Panora"},
                                      {"main", "1"},
                                      {"id", "QXD A2B"},
                                      {"diagonal_inches", "24"},
                                      {"made_in_year", "2009"}}));
  EXPECT_EQ(plain[1].at("path"), "/Video/Monitors/Monitor:3");

  const std::vector<Row> extended = rows_of(
      "displays",
      monitors + "+Displays=\n*display:1=PANORA\nmain=0\nyear=2010\n*display:2=Console\nyear=1999\n-\n-\n");
  ASSERT_EQ(extended.size(), 3u);
  EXPECT_EQ(extended[0].at("path"), "/Video/Displays/display:1");
  EXPECT_EQ(filled(extended[0]), (Filled{{"display", "1"},
                                         {"name", "PANORA"},
                                         {"model", "Panora"},
                                         {"main", "0"},
                                         {"id", "QXD A2B"},
                                         {"diagonal_inches", "24"},
                                         {"made_in_year", "2009"}}));
  EXPECT_EQ(filled(extended[1]),
            (Filled{{"display", "2"}, {"name", "Console"}, {"model", "Console"}, {"made_in_year", "1999"}}));
  EXPECT_EQ(filled(extended[2]), (Filled{{"display", "3"}, {"model", "Wall"}}));
}

TEST(Tables, AnAdapterHasTheDetailsOfItsNumber) {
  const std::string lines =
      "+Network=\n+Adapters=\n*net-adapter:1=Ethernet\nbsd-device-name=en0\n*net-adapter:2=Wi-Fi\n-\n"
      "+Details=\n*adapter:2=\nservice-order=1\nsubnet-masks=255.0.0.0\n-\n-\n";
  const std::vector<Row> rows = rows_of("adapters", lines);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(filled(rows[0]), (Filled{{"name", "Ethernet"}, {"device", "en0"}}));
  EXPECT_EQ(filled(rows[1]), (Filled{{"name", "Wi-Fi"}, {"service_order", "1"}, {"subnet", "255.0.0.0"}}));
}

TEST(Tables, AnAccountAProcessAndAPackageHaveTheirNumbersAndTimes) {
  EXPECT_EQ(filled(rows_of("accounts",
                           "+User-accounts=\n*usr-acc:jane=jane\nid=501\ngroup=-2\nhdir=/users/jane\n-\n")
                       .at(0)),
            (Filled{{"name", "jane"}, {"id", "501"}, {"group_id", "-2"}, {"home", "/users/jane"}}));
  EXPECT_EQ(
      filled(rows_of("processes",
                     "+Processes=\n*process:4=launchd\npid=1\nppid=0\nuser=root\ncmd-line=/sbin/launchd\n-\n")
                 .at(0)),
      (Filled{{"name", "launchd"},
              {"pid", "1"},
              {"parent_pid", "0"},
              {"user_name", "root"},
              {"command", "/sbin/launchd"}}));
  EXPECT_EQ(
      filled(rows_of("packages",
                     "+Packages=\n*Package:1=Notes\nversion=4\ninstall-date=20260114081451.000000+60\n-\n")
                 .at(0)),
      (Filled{{"name", "Notes"}, {"version", "4"}, {"installed_at", "2026-01-14T07:14:51Z"}}));
}

TEST(Tables, DaysAndTimesAreOfTheCalendarThatTheScanNames) {
  const std::string calendar = "*Scan=\ncalendar=ethiopic\n";
  EXPECT_EQ(cell("software", "modified_on", "+Software=\n*Soft:1=Chess\ninst-date=20040509\n-\n" + calendar),
            "2012-01-18");
  EXPECT_EQ(cell("packages", "installed_at",
                 "+Packages=\n*Package:1=Notes\ninstall-date=20180506081451.000000+0\n-\n" + calendar),
            "2026-01-14T08:14:51Z");
}

TEST(Tables, SecurityIsARowOfEveryScan) {
  EXPECT_EQ(filled(rows_of("security", "hostname=A\n").at(0)), Filled());
  const std::string lines =
      "+Security=\n*Firewall=\nstatus=2\nstealth-mode=1\n*Platform=\nfilevault=0\nsecure-boot=Full "
      "Security\n-\n";
  EXPECT_EQ(filled(rows_of("security", lines).at(0)), (Filled{{"firewall_status", "2"},
                                                              {"firewall_stealth_mode", "1"},
                                                              {"disk_encryption", "0"},
                                                              {"secure_boot", "Full Security"}}));
}

// A value of the wrong form leaves the cell empty, but keeps the row.

TEST(OddValues, AnIntegerIsDecimalAndOfAtMostFifteenDigits) {
  const auto pid = [](const std::string& value) {
    return cell("processes", "pid", "+Processes=\n*process:1=a\npid=" + value + "\n-\n");
  };
  for (const char* good : {"0", "17", "-5", "999999999999999"}) EXPECT_EQ(pid(good), good);
  for (const char* odd : {"", "x", "1x", "1.5", "007", "0x1F", "+1", "--1", " 1", "1 ", "1e3", "-0", "-",
                          "1000000000000000", "99999999999999999999999"})
    EXPECT_EQ(pid(odd), std::nullopt) << odd;
}

TEST(OddValues, ABooleanIsOneOrZero) {
  const auto used = [](const std::string& value) {
    return cell("memory", "used", "+Memory=\n*Memory-slot:1=\nused=" + value + "\n-\n");
  };
  EXPECT_EQ(used("1"), "1");
  EXPECT_EQ(used("0"), "0");
  for (const char* odd : {"", "2", "yes", "true", "01", "-1"}) EXPECT_EQ(used(odd), std::nullopt) << odd;
}

TEST(OddValues, ASizeIsTheExactOneOrElseOfItsUnit) {
  const auto size = [](const std::string& value) {
    return cell("volumes", "size_bytes",
                "+Storage=\n+Logical-disks=\n*partition:1=A\nsize=" + value + "\n-\n-\n");
  };
  EXPECT_EQ(size("1\n~base-value=7"), "7");
  EXPECT_EQ(size("1\n~base-value=0"), "0");
  EXPECT_EQ(size("x\n~base-value=7"), "7");
  for (const char* odd : {"-7", "7.5", "seven", "", "1000000000000000"}) {
    EXPECT_EQ(size(std::string("2\n~base-value=") + odd), "2000000000") << odd;
  }
  EXPECT_EQ(size("0"), "0");
  EXPECT_EQ(size("465.76"), "465760000000");
  EXPECT_EQ(size("0.0000000019"), "1");
  EXPECT_EQ(size("3\n~units=KB"), "3072");
  EXPECT_EQ(size("3\n~units=MB"), "3145728");
  EXPECT_EQ(size("999999"), "999999000000000");
  for (const char* odd :
       {"", "x", "-1", "1000000", "999999999999999", "1,5", "3\n~units=TB", "3\n~units=mb"}) {
    EXPECT_EQ(size(odd), std::nullopt) << odd;
  }
}

TEST(OddValues, ADurationHasItsFourteenDigits) {
  const auto uptime = [](const std::string& value) {
    return cell("machines", "uptime_seconds", "+OS=\n*os:1=\nuptime=" + value + "\n-\n");
  };
  EXPECT_EQ(uptime("00000000000000.000000:000"), "0");
  EXPECT_EQ(uptime("00000001010101.000000:000"), "90061");
  EXPECT_EQ(uptime("99999999235959.000000:000"), "8639999999999");
  for (const char* odd : {"", "0000000203040", "0000000x030405.000000:000", "-0000002030405.0"})
    EXPECT_EQ(uptime(odd), std::nullopt) << odd;
}

TEST(OddValues, ADayAndATimeAreOfTheCalendar) {
  const auto day = [](const std::string& value) {
    return cell("software", "modified_on", "+Software=\n*Soft:1=A\ninst-date=" + value + "\n-\n");
  };
  EXPECT_EQ(day("20120229"), "2012-02-29");
  for (const char* odd : {"", "20110229", "20121301", "2012011", "201201181", "2012-1-8", "19691231"})
    EXPECT_EQ(day(odd), std::nullopt) << odd;
  const auto time = [](const std::string& value) {
    return cell("packages", "installed_at", "+Packages=\n*Package:1=A\ninstall-date=" + value + "\n-\n");
  };
  for (const char* odd : {"", "20120118", "20120118250000.000000+0", "yesterday"})
    EXPECT_EQ(time(odd), std::nullopt) << odd;
}

TEST(OddValues, BytesThatAreNotUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(cell("software", "name", "+Software=\n*Soft:1=caf\xE9\n-\n"), "caf\uFFFD");
  EXPECT_EQ(cell("software", "path", "+Software=\n*Soft:\xE9=A\n-\n"), "/Software/Soft:\uFFFD");
}

TEST(TableRows, NdjsonHasNumbersBooleansAndNull) {
  const std::string file =
      snapshot_of("+Memory=\n*Memory-slot:2=\nused=1\nbank-label=\"B\"\ncapacity=1\n-\n");
  const std::string id = inv::scan_of(*maker::open(file)).id;
  EXPECT_EQ(exported("memory", inv::ExportFormat::ndjson, {file}),
            "{\"scan_id\":\"" + id +
                "\",\"scanned_at\":\"2012-01-18T13:30:45Z\",\"machine\":\"test.inv\",\"path\":\"/Memory/"
                "Memory-slot:2\","
                "\"slot\":2,\"used\":true,\"bank\":\"\\\"B\\\"\",\"capacity_bytes\":1048576,\"type\":null,"
                "\"speed_mhz\":null,"
                "\"manufacturer\":null}\n");
  EXPECT_THAT(
      exported("memory", inv::ExportFormat::ndjson, {snapshot_of("+Memory=\n*Memory-slot:1=\nused=0\n-\n")}),
      HasSubstr(",\"used\":false,"));
}

TEST(TableRows, CsvHasOneHeadAndEmptyCells) {
  const std::string file =
      snapshot_of("+Memory=\n*Memory-slot:2=\nused=1\nbank-label=a,b\n*Memory-slot:3=\nused=0\n-\n");
  const std::string front =
      inv::scan_of(*maker::open(file)).id + ",2012-01-18T13:30:45Z,test.inv,/Memory/Memory-slot:";
  EXPECT_EQ(exported("memory", inv::ExportFormat::csv, {file}),
            "scan_id,scanned_at,machine,path,slot,used,bank,capacity_bytes,type,speed_mhz,manufacturer\r\n" +
                front + "2,2,1,\"a,b\",,,,\r\n" + front + "3,3,0,,,,,\r\n");
  const std::string head = exported("memory", inv::ExportFormat::csv, {});
  EXPECT_EQ(std::count(head.begin(), head.end(), '\n'), 1);
}

TEST(TableRows, CsvCanDisarmFormulas) {
  const std::string file = snapshot_of("+Software=\n*Soft:1==1+1\n-\n");
  EXPECT_THAT(exported("software", inv::ExportFormat::csv, {file}), HasSubstr(",/Software/Soft:1,=1+1,"));
  EXPECT_THAT(exported("software", inv::ExportFormat::csv, {file}, inv::Formulas::disarmed),
              HasSubstr(",/Software/Soft:1,'=1+1,"));
}

TEST(TableRows, AreAllThereWhenTheyAreMany) {
  std::string lines = "+Software=\n";
  for (int i = 1; i <= 5000; ++i) lines += "*Soft:" + std::to_string(i) + "=A\n";
  const std::string text = exported("software", inv::ExportFormat::ndjson, {snapshot_of(lines + "-\n")});
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5000);
  EXPECT_THAT(text, HasSubstr("\"/Software/Soft:5000\""));
}

}  // namespace
