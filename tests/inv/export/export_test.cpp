#include "inv/export/export.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "inv/base/sha256.h"
#include "inv/maker.h"

namespace {

using inv::ExportFormat;
using nlohmann::json;
using testing::HasSubstr;

std::string exported(const inv::ExportOptions& options, const std::vector<std::string>& files) {
  char* text = nullptr;
  size_t length = 0;
  std::FILE* stream = open_memstream(&text, &length);
  inv::Exporter exporter(options, stream);
  exporter.begin();
  for (const std::string& file : files) exporter.add(*maker::open(file));
  exporter.end();
  EXPECT_TRUE(exporter.good());
  std::fclose(stream);
  const std::string result(text, length);
  std::free(text);
  return result;
}

const std::string kOdd = maker::file_of_text(
    "\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=a,\"b\"\rc\n*Odd:1=caf\xE9\n~note=\xFF\nempty=\n~complex=\nsize="
    "1\n~units=GB\n"
    "~base-value=1000000000\n-\n");

// The values of a CSV file whose only fact is each of these.
std::string csv_value(const std::string& value, bool safe) {
  const std::string file = maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\ninfo=" + value + "\n");
  const std::string text =
      exported({ExportFormat::csv, safe ? inv::Formulas::disarmed : inv::Formulas::kept}, {file});
  const std::string before = ",/info,info,";
  const size_t start = text.find(before) + before.size();
  return text.substr(start, text.find(",,,", start) - start);
}

TEST(Export, CsvCanDisarmWhatASpreadsheetWouldRun) {
  for (const char* value : {"=1+1", "+cmd", "-cmd", "@SUM(A1)", "\tx", "-1.2.3", "+", "-.5", "--1"}) {
    EXPECT_EQ(csv_value(value, true), std::string("'") + value);
    EXPECT_EQ(csv_value(value, false), value);
  }
  EXPECT_EQ(csv_value("\r=1", true), "\"'\r=1\"");
  EXPECT_EQ(csv_value("=\"a\"", true), "\"'=\"\"a\"\"\"");
  for (const char* value : {"-2", "+1.5", "a=b", "'", "7"}) EXPECT_EQ(csv_value(value, true), value);
}

TEST(Export, PrintsOnATerminalWhatCannotHarmIt) {
  const std::string file =
      maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\ninfo=a\x1B[2J\x07\xC2\x9B\u202E\u200Bz\n");
  for (const ExportFormat format :
       {ExportFormat::zxml, ExportFormat::csv, ExportFormat::json, ExportFormat::ndjson}) {
    const std::string text = exported({format, inv::Formulas::kept, true}, {file});
    for (const char* harmful : {"\x1B", "\x07", "\xC2\x9B", "\u202E", "\u200B", "\r"}) {
      EXPECT_EQ(text.find(harmful), std::string::npos);
    }
    EXPECT_EQ(text.back(), '\n');
  }
  EXPECT_NE(exported({ExportFormat::zxml}, {file}).find("\x1B"), std::string::npos);
}

TEST(Export, JsonHasTheTreesInOrder) {
  const json machines = json::parse(exported({ExportFormat::json}, {kOdd, maker::file()}));
  ASSERT_EQ(machines.size(), 2u);
  const json& machine = machines[0];
  EXPECT_EQ(machine["schema"], "velkaro-inventory/1");
  EXPECT_EQ(machine["file"], "test.inv");
  EXPECT_EQ(machine["machine"], "a,\"b\"\rc");
  ASSERT_EQ(machine["trees"].size(), 1u);
  const json& top = machine["trees"][0];
  EXPECT_EQ(top["name"], "Snapshot");
  EXPECT_EQ(top["attributes"][0], json::parse(R"({"name": "hostname", "value": "a,\"b\"\rc"})"));
  EXPECT_EQ(top["children"][0], json::parse(R"({"name": "Odd:1", "value": "caf\ufffd",
      "annotations": [{"key": "note", "text": "\ufffd"}],
      "attributes": [{"name": "empty", "value": "", "annotations": [{"key": "complex", "text": ""}]},
                     {"name": "size", "value": "1", "unit": "GB", "annotations":
                      [{"key": "units", "text": "GB"}, {"key": "base-value", "text": "1000000000"}]}],
      "children": []})"));
  EXPECT_EQ(machines[1]["name"], "Office Mac");
  EXPECT_EQ(machines[1]["trees"][1]["name"], "AssetInfo");
}

TEST(Export, JsonOfADeepTreeIsNotMuchLargerThanItsText) {
  std::string lines = "\xEF\xBB\xBF?zxml\n";
  for (int i = 0; i < 500; ++i) lines += "+a=\n";
  for (int i = 0; i < 500; ++i) lines += "*b=\n";
  for (int i = 0; i < 500; ++i) lines += "-\n";
  const std::string text = exported({ExportFormat::json}, {maker::file_of_text(lines)});
  EXPECT_LT(text.size(), lines.size() * 20);
  json element = json::parse(text)[0]["trees"][0];
  for (int i = 0; i < 499; ++i) element = json(element["children"][0]);
  EXPECT_EQ(element["children"].size(), 500u);
}

TEST(Export, JsonEndsWithALineOfItsOwn) {
  const std::string text = exported({ExportFormat::json}, {maker::file()});
  EXPECT_EQ(text.substr(text.size() - 3), "\n]\n");
}

TEST(Export, NoFilesAreAnEmptyJsonArray) {
  EXPECT_EQ(json::parse(exported({ExportFormat::json}, {})), json::array());
}

// What the rows of a file have in common after the first columns.
std::string id_of(const std::string& file) { return inv::hexadecimal(inv::sha256(file)); }

constexpr char kColumns[] =
    "machine,path,name,value,unit,base_value,scan_id,scanned_at,section,kind,element,number\r\n";

TEST(Export, NdjsonIsAFactALine) {
  const std::string behind =
      ",\"scan_id\":\"" + id_of(kOdd) + "\",\"scanned_at\":null,\"section\":\"snapshot\",";
  EXPECT_EQ(exported({ExportFormat::ndjson}, {kOdd}),
            "{\"machine\":\"a,\\\"b\\\"\\rc\",\"path\":\"/"
            "hostname\",\"name\":\"hostname\",\"value\":\"a,\\\"b\\\"\\rc\","
            "\"unit\":\"\",\"base_value\":\"\"" +
                behind +
                "\"kind\":\"/hostname\",\"element\":\"\",\"number\":null}\n"
                "{\"machine\":\"a,\\\"b\\\"\\rc\",\"path\":\"/"
                "Odd:1\",\"name\":\"Odd:1\",\"value\":\"caf\uFFFD\",\"unit\":\"\","
                "\"base_value\":\"\"" +
                behind +
                "\"kind\":\"/Odd\",\"element\":\"1\",\"number\":null}\n"
                "{\"machine\":\"a,\\\"b\\\"\\rc\",\"path\":\"/Odd:1/"
                "size\",\"name\":\"size\",\"value\":\"1\",\"unit\":\"GB\","
                "\"base_value\":\"1000000000\"" +
                behind + "\"kind\":\"/Odd/size\",\"element\":\"1\",\"number\":1}\n");
}

TEST(Export, CsvQuotesWhatWouldBreakALine) {
  const std::string behind = id_of(kOdd) + ",,snapshot,";
  EXPECT_EQ(exported({ExportFormat::csv}, {kOdd}),
            kColumns +
                ("\"a,\"\"b\"\"\rc\",/hostname,hostname,\"a,\"\"b\"\"\rc\",,," + behind + "/hostname,,\r\n") +
                "\"a,\"\"b\"\"\rc\",/Odd:1,Odd:1,caf\uFFFD,,," + behind + "/Odd,1,\r\n" +
                "\"a,\"\"b\"\"\rc\",/Odd:1/size,size,1,GB,1000000000," + behind + "/Odd/size,1,1\r\n");
}

TEST(Export, RowsSayOfWhichScanTheyAre) {
  const std::string file = maker::file();
  EXPECT_THAT(exported({ExportFormat::csv}, {file}),
              HasSubstr("\r\nC02TEST00001,/timestamp,timestamp,20120118153045.000000+120,,," + id_of(file) +
                        ",2012-01-18T13:30:45Z,snapshot,/timestamp,,\r\n"));
  EXPECT_THAT(exported({ExportFormat::csv}, {file}),
              HasSubstr("size,499.50,GB,499500000000," + id_of(file) +
                        ",2012-01-18T13:30:45Z,snapshot,/Storage/Logical-disks/partition/size,1,499.50\r\n"));
  EXPECT_THAT(
      exported({ExportFormat::ndjson}, {file}),
      HasSubstr("\"scan_id\":\"" + id_of(file) +
                "\",\"scanned_at\":\"2012-01-18T13:30:45Z\",\"section\":\"asset\",\"kind\":\"AssetInfo/"
                "control/os-name\",\"element\":\"\",\"number\":null}\n"));
}

TEST(Export, JsonSaysWhichScanItIs) {
  const json machines = json::parse(exported({ExportFormat::json}, {kOdd, maker::file()}));
  EXPECT_EQ(machines[0]["scan_id"], id_of(kOdd));
  EXPECT_TRUE(machines[0]["scanned_at"].is_null());
  EXPECT_EQ(machines[1]["scanned_at"], "2012-01-18T13:30:45Z");
}

// The values in the CSV rows, unparsed.
std::string csv_values(const std::string& lines) {
  const std::string file = maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=x\n" + lines);
  std::string values;
  std::istringstream rows(exported({ExportFormat::csv}, {file}));
  for (std::string row; std::getline(rows, row);) {
    const size_t name_end = row.find(',', row.find(',', 2) + 1);
    const size_t unit = row.find(",,," + id_of(file));
    if (unit != row.npos) values += row.substr(name_end + 1, unit - name_end - 1) + "|";
  }
  return values;
}

TEST(Export, CsvQuotesAComma) { EXPECT_EQ(csv_values("a=1, 2\n"), "x|\"1, 2\"|"); }

TEST(Export, CsvLeavesWhatASpreadsheetMightCalculate) {
  EXPECT_EQ(csv_values("a==1+1\nb=-5\nc=007\nd= x \n"), "x|=1+1|-5|007| x |");
}

TEST(Export, ManyRowsAreAllThere) {
  std::string lines;
  for (int i = 0; i < 5000; ++i) lines += "a" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  const std::string text = exported(
      {ExportFormat::ndjson}, {maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=x\n" + lines)});
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5001);
  EXPECT_THAT(text, HasSubstr("\"name\":\"a4999\",\"value\":\"4999\""));
}

TEST(Export, ZxmlIsTheTextItself) {
  EXPECT_EQ(exported({ExportFormat::zxml}, {maker::file()}),
            maker::text_of(*maker::snapshot()) + maker::text_of(*maker::asset()));
}

TEST(Export, AFullDiskIsNoticed) {
  std::FILE* full = std::fopen("/dev/full", "w");
  if (!full) GTEST_SKIP() << "no /dev/full here";
  inv::Exporter exporter({ExportFormat::csv}, full);
  exporter.begin();
  exporter.add(*maker::open(maker::file()));
  exporter.end();
  EXPECT_FALSE(exporter.good());
  std::fclose(full);
}

}  // namespace
