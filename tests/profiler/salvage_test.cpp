#include "profiler/salvage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "profiler/output_helpers.h"
#include "profiler/property_list.h"

namespace {

using testing::HasSubstr;

// What salvage leaves between prologue and epilogue.
std::string salvage(const std::string& text) {
  const ProfilerOutput clean = salvage_output(output_of(text));
  EXPECT_STREQ(clean.data_type, "SPTestDataType");
  return std::string(cut_output(clean.text.get(), clean.length, Cut::middle));
}

const std::string kDictionary = "<dict><key>k</key><string>v</string></dict>";

TEST(SalvageOutput, KeepsAWholeListUnchanged) {
  const std::string elements =
      "<dict><key>a</key><string>&amp;&lt;&gt;\r\n</string><key>b</key><integer>0x10</integer><key>c</"
      "key><real>1.5e3</real>"
      "<key>d</key><true/><key>e</key><false/><key>f</key><date>2010-01-02T03:04:05Z</date><key>g</"
      "key><data>AAEC</data>"
      "<key>h</key><array><array></array></array></dict>";
  std::string expected = elements;
  expected.replace(expected.find("&gt;"), 4, ">");
  EXPECT_EQ(salvage(framed(elements)), expected);
}

TEST(SalvageOutput, SkipsWhatComesBeforeTheList) {
  EXPECT_EQ(salvage("2010-01-01 driver[12]: <hello>\n" + framed(kDictionary)), kDictionary);
  EXPECT_EQ(salvage("noise <plist><array>" + kDictionary + "</array></plist>"), kDictionary);
}

TEST(SalvageOutput, ReplacesInvalidBytesAndNuls) {
  EXPECT_EQ(salvage(framed("<string>caf\xE9!</string>")), "<string>caf\uFFFD!</string>");
  EXPECT_EQ(salvage(framed(std::string("<string>a\0b</string>", 20))),
            "<string>a\uFFFD"
            "b</string>");
}

TEST(SalvageOutput, KeepsUnknownEntitiesAsText) {
  EXPECT_EQ(salvage(framed("<string>AT&T &foo; &amp;</string>")),
            "<string>AT&amp;T &amp;foo; &amp;</string>");
}

TEST(SalvageOutput, DropsUnreadableValuesWithTheirKeys) {
  EXPECT_EQ(salvage(framed("<dict><key>n</key><integer>1x</integer><key>d</key><date>today</date><key>k</"
                           "key><string>v</string></dict>")),
            kDictionary);
}

// Whatever byte of the name is damaged in this dictionary, and however.
void expect_put_right(const std::string& name, const std::string& dictionary) {
  for (size_t i = 0; i < name.size(); ++i) {
    for (const char damage : {'\0', '\x80', '\xFF', '<', '&'}) {
      std::string damaged = dictionary;
      damaged[dictionary.find(">" + name + "<") + 1 + i] = damage;
      EXPECT_EQ(salvage(framed(damaged)), dictionary) << damaged;
    }
  }
}

TEST(SalvageOutput, PutsDamagedKeysRightOnWhichMuchHangs) {
  for (const std::string key : {"_items",
                                "_dataType",
                                "volumes",
                                "spdisplays_ndrvs",
                                "_spdisplays_edid",
                                "spnetworklocation_services",
                                "SMB",
                                "Ethernet",
                                "MAC Address",
                                "interface",
                                "ip_address",
                                "AC Power",
                                "default",
                                "os_version",
                                "removable_media",
                                "smart_status",
                                "dimm_status",
                                "spfirewall_globalstate",
                                "spfirewall_services",
                                "spfirewall_applications"}) {
    expect_put_right(key, "<dict><key>" + key + "</key><array></array></dict>");
    expect_put_right(key, "<dict><key>" + key + "</key><string>x</string></dict>");
  }
}

TEST(SalvageOutput, PutsDamagedValuesRightOnWhichMuchHangs) {
  for (const std::string value : {"sppower_information", "spfirewall_globalstate_limit_connections"}) {
    expect_put_right(value, "<dict><key>k</key><string>" + value + "</string></dict>");
  }
}

TEST(SalvageOutput, PutsTheDamagedNameOfTheDataTypeRight) {
  expect_put_right("SPTestDataType", "<dict><key>_dataType</key><string>SPTestDataType</string></dict>");
}

TEST(SalvageOutput, KeepsNamesThatOnlyResembleThoseOfLists) {
  for (const std::string name : {"_item", "_itemss", "_item1", "items", "_it�em�", "_items�", ""}) {
    const std::string dictionary = "<dict><key>" + name + "</key><string>SPTest�DataType</string></dict>";
    EXPECT_EQ(salvage(framed(dictionary)), dictionary);
  }
  const std::string value = "<dict><key>_name</key><string>SPTes�DataType</string></dict>";
  EXPECT_EQ(salvage(framed(value)), value);
}

TEST(SalvageOutput, ClosesWhatATruncatedOutputLeftOpen) {
  EXPECT_EQ(
      salvage(kPrologue + std::string("<dict><key>k</key><string>v</string><key>l</key><string>cut of")),
      kDictionary);
}

TEST(SalvageOutput, DropsASubtreeBelowTheDepthLimit) {
  std::string deep;
  for (int i = 0; i < 600; ++i) deep += "<array>";
  const std::string clean = salvage(framed("<string>before</string>" + deep));
  EXPECT_THAT(clean, HasSubstr("<string>before</string><array>"));
  EXPECT_TRUE(parse_profiler_output(output_of(framed(clean))));
}

TEST(SalvageOutput, IsNoneForWhatHasNothingOfAList) {
  for (const std::string& text : {std::string(), std::string("Segmentation fault\n"), std::string(500, '<'),
                                  std::string(500, '\0'), std::string("<?xml version=\"1.0\"?>\n<plist>")}) {
    const ProfilerOutput clean = salvage_output(output_of(text));
    EXPECT_FALSE(clean.text) << text;
    EXPECT_EQ(clean.length, 0u);
    EXPECT_STREQ(clean.data_type, "SPTestDataType");
  }
}

TEST(SalvageOutput, OfAnEmptyListIsAnEmptyList) {
  EXPECT_EQ(std::string(salvage_output(output_of("log\n" + framed(""))).text.get()), framed(""));
  EXPECT_EQ(std::string(salvage_output(output_of("<plist><array/></plist>")).text.get()), framed(""));
}

TEST(SalvageOutput, KeepsValuesOutsideOfAnyList) { EXPECT_EQ(salvage("noise" + kDictionary), kDictionary); }

TEST(SalvageOutput, IsAListThatParses) {
  const std::string whole = framed(
      "<dict><key>k\xC3\xA9</key><array><string>&#65;<![CDATA[<]]></string><real>1</real></array></dict>");
  size_t lists = 0;
  for (size_t size = 0; size <= whole.size(); ++size) {
    for (const char damage : {'\0', '\x80', '\xFF', '<', '&'}) {
      std::string damaged(whole, 0, size);
      if (!damaged.empty()) damaged[damaged.size() / 2] = damage;
      const ProfilerOutput clean = salvage_output(output_of(damaged));
      if (!clean.text) continue;
      EXPECT_TRUE(parse_profiler_output({"", copy_text(clean.text.get()), clean.length})) << damaged;
      ++lists;
    }
  }
  EXPECT_GT(lists, whole.size());
}

}  // namespace
