#include "inv/export/export.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "inv/facts/facts.h"
#include "inv/maker.h"

namespace {

using inv::ExportFormat;
using nlohmann::json;

std::string exported(ExportFormat format, const std::vector<std::string>& files) {
  char* text = nullptr;
  size_t length = 0;
  std::FILE* stream = open_memstream(&text, &length);
  inv::Exporter exporter(format, stream);
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

TEST(Export, JsonHasTheTreesInOrder) {
  const json machines = json::parse(exported(ExportFormat::json, {kOdd, maker::file()}));
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
  const std::string text = exported(ExportFormat::json, {maker::file_of_text(lines)});
  EXPECT_LT(text.size(), lines.size() * 20);
  json element = json::parse(text)[0]["trees"][0];
  for (int i = 0; i < 499; ++i) element = json(element["children"][0]);
  EXPECT_EQ(element["children"].size(), 500u);
}

TEST(Export, JsonEndsWithALineOfItsOwn) {
  const std::string text = exported(ExportFormat::json, {maker::file()});
  EXPECT_EQ(text.substr(text.size() - 3), "\n]\n");
}

TEST(Export, NoFilesAreAnEmptyJsonArray) {
  EXPECT_EQ(json::parse(exported(ExportFormat::json, {})), json::array());
}

TEST(Export, NdjsonIsAFactALine) {
  EXPECT_EQ(exported(ExportFormat::ndjson, {kOdd}),
            "{\"machine\":\"a,\\\"b\\\"\\rc\",\"path\":\"/"
            "hostname\",\"name\":\"hostname\",\"value\":\"a,\\\"b\\\"\\rc\","
            "\"unit\":\"\",\"base_value\":\"\"}\n"
            "{\"machine\":\"a,\\\"b\\\"\\rc\",\"path\":\"/"
            "Odd:1\",\"name\":\"Odd:1\",\"value\":\"caf\uFFFD\",\"unit\":\"\","
            "\"base_value\":\"\"}\n"
            "{\"machine\":\"a,\\\"b\\\"\\rc\",\"path\":\"/Odd:1/"
            "size\",\"name\":\"size\",\"value\":\"1\",\"unit\":\"GB\","
            "\"base_value\":\"1000000000\"}\n");
}

TEST(Export, CsvQuotesWhatWouldBreakALine) {
  EXPECT_EQ(exported(ExportFormat::csv, {kOdd}),
            "machine,path,name,value,unit,base_value\r\n"
            "\"a,\"\"b\"\"\rc\",/hostname,hostname,\"a,\"\"b\"\"\rc\",,\r\n"
            "\"a,\"\"b\"\"\rc\",/Odd:1,Odd:1,caf\uFFFD,,\r\n"
            "\"a,\"\"b\"\"\rc\",/Odd:1/size,size,1,GB,1000000000\r\n");
}

TEST(Export, CsvQuotesAComma) {
  const std::string file = maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=x\na=1, 2\n");
  EXPECT_EQ(exported(ExportFormat::csv, {file}),
            "machine,path,name,value,unit,base_value\r\n"
            "x,/hostname,hostname,x,,\r\nx,/a,a,\"1, 2\",,\r\n");
}

TEST(Export, CsvLeavesWhatASpreadsheetMightCalculate) {
  const std::string file =
      maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=x\na==1+1\nb=-5\nc=007\nd= x \n");
  EXPECT_EQ(exported(ExportFormat::csv, {file}),
            "machine,path,name,value,unit,base_value\r\n"
            "x,/hostname,hostname,x,,\r\nx,/a,a,=1+1,,\r\nx,/b,b,-5,,\r\nx,/c,c,007,,\r\nx,/d,d, x ,,\r\n");
}

TEST(Export, ZxmlIsTheTextItself) {
  EXPECT_EQ(exported(ExportFormat::zxml, {maker::file()}),
            maker::text_of(*maker::snapshot()) + maker::text_of(*maker::asset()));
}

TEST(Export, AFullDiskIsNoticed) {
  std::FILE* full = std::fopen("/dev/full", "w");
  if (!full) GTEST_SKIP() << "no /dev/full here";
  inv::Exporter exporter(ExportFormat::csv, full);
  exporter.begin();
  exporter.add(*maker::open(maker::file()));
  exporter.end();
  EXPECT_FALSE(exporter.good());
  std::fclose(full);
}

}  // namespace
