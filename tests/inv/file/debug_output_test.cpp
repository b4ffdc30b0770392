#include "inv/file/debug_output.h"

#include <gtest/gtest.h>

namespace {

using Types = std::vector<std::pair<std::string, std::string>>;

Types split(std::string_view output) {
  Types types;
  for (const inv::DataType& type : inv::split_profiler_output(output))
    types.emplace_back(type.name, type.dict);
  return types;
}

TEST(ProfilerOutput, CutsADictionaryForEachDataTypeWithItsLines) {
  EXPECT_EQ(
      split("<?xml?>\n<plist version=\"1.0\">\n<array>\n"
            "\t<dict>\n\t\t<key>_dataType</key>\n\t\t<string>SPOneDataType</string>\n\t</dict>\n"
            "\t<dict>\n\t\t<key>_items</key>\n\t\t<array><dict><key>a</key></dict></array>\n"
            "\t\t<key>_dataType</key>\n\t\t<string>SPTwoDataType</string>\n\t</dict>\n</array>\n</plist>\n"),
      (Types{{"SPOneDataType",
              "\t<dict>\n\t\t<key>_dataType</key>\n\t\t<string>SPOneDataType</string>\n\t</dict>\n"},
             {"SPTwoDataType",
              "\t<dict>\n\t\t<key>_items</key>\n\t\t<array><dict><key>a</key></dict></array>\n"
              "\t\t<key>_dataType</key>\n\t\t<string>SPTwoDataType</string>\n\t</dict>\n"}}));
}

TEST(ProfilerOutput, OnlyTheDictionarysOwnKeyNamesIt) {
  EXPECT_EQ(
      split("<array><dict><key>_items</key><array><dict><key>_dataType</key><string>SPInner</string></dict>"
            "</array></dict></array>"),
      Types{});
  EXPECT_EQ(split("<array><dict><key>other</key><string>SPWrong</string></dict></array>"), Types{});
}

TEST(ProfilerOutput, ANameThatCouldLeaveTheFolderIsRefused) {
  for (const char* name : {"", "../../etc/passwd", "SP/x", "a b", "&lt;x&gt;", "."}) {
    EXPECT_EQ(
        split("<array><dict><key>_dataType</key><string>" + std::string(name) + "</string></dict></array>"),
        Types{})
        << name;
  }
}

TEST(ProfilerOutput, CommentsAndCdataHoldNoTags) {
  EXPECT_EQ(split("<array><!-- <dict> --><dict><key>_dataType</key><string>SPOne</string><key>k</key><string>"
                  "<![CDATA[</dict>]]></string></dict></array>"),
            (Types{{"SPOne",
                    "<dict><key>_dataType</key><string>SPOne</string><key>k</key><string><![CDATA[</dict>]]>"
                    "</string></dict>"}}));
  EXPECT_EQ(split("<array><!-- a > b <dict> --><dict><key>_dataType</key><string>SPOne</string></dict>"),
            (Types{{"SPOne", "<dict><key>_dataType</key><string>SPOne</string></dict>"}}));
}

TEST(ProfilerOutput, DamagedOutputIsCutAsFarAsItGoes) {
  EXPECT_EQ(split("<array><dict><key>_dataType</key><string>SPOne</string>").size(), 0u);
  EXPECT_EQ(
      split("log line\n<array><dict><key>_dataType</key><string>SPOne</string>\xE9</dict><dict>").size(), 1u);
  EXPECT_EQ(split("</dict></array><").size(), 0u);
  EXPECT_EQ(split("").size(), 0u);
}

TEST(ProfilerOutput, AloneItIsInTheFrameThatTheScannerCutsOff) {
  const inv::DataType type = {"SPOne", "\t<dict>...</dict>\n"};
  const std::string output = inv::output_of(type);
  EXPECT_EQ(output.size(), 172 + type.dict.size() + 18);
  EXPECT_EQ(output.substr(172, type.dict.size()), type.dict);
}

}  // namespace
