#include "profiler/salvage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "profiler/plist_access.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"

namespace {

using testing::HasSubstr;

ProfilerOutput output_of(const std::string& text) {
  return {"SPTestDataType", copy_range(text.data(), text.data() + text.size()),
          static_cast<uint32_t>(text.size())};
}

std::string framed(const std::string& elements) { return kPrologue + elements + kEpilogue; }

// What salvage leaves between prologue and epilogue.
std::string salvage(const std::string& text) {
  const ProfilerOutput clean = salvage_output(output_of(text));
  EXPECT_STREQ(clean.data_type, "SPTestDataType");
  return std::string(cut_output(clean.text.get(), clean.length, Cut::kMiddle));
}

const std::string kDictionary = "<dict><key>k</key><string>v</string></dict>";

TEST(SalvageOutput, KeepsAWholeListAsItIs) {
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

TEST(SalvageOutput, SkipsWhatStandsBeforeTheList) {
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

TEST(SalvageOutput, IsAlwaysAListThatParses) {
  const std::string whole = framed(
      "<dict><key>k\xC3\xA9</key><array><string>&#65;<![CDATA[<]]></string><real>1</real></array></dict>");
  for (size_t size = 0; size <= whole.size(); ++size) {
    for (const char damage : {'\0', '\x80', '\xFF', '<', '&'}) {
      std::string damaged(whole, 0, size);
      if (!damaged.empty()) damaged[damaged.size() / 2] = damage;
      const ProfilerOutput clean = salvage_output(output_of(damaged));
      EXPECT_TRUE(parse_profiler_output({"", copy_text(clean.text.get()), clean.length})) << damaged;
    }
  }
}

ProfilerDocument document_of(const std::vector<std::string>& texts) {
  ProfilerDocument document;
  for (const std::string& text : texts) document.outputs.push_back(output_of(text));
  document.text = splice_outputs(document.outputs, &document.length);
  return document;
}

// 21 outputs, of which those at positions 1 and 2 are given.
ProfilerDocument document_with(const std::string& first, const std::string& second) {
  std::vector<std::string> texts(21, framed(""));
  texts[1] = first;
  texts[2] = second;
  return document_of(texts);
}

std::string tree_of(const ProfilerDocument& document) {
  InventoryTree tree(1, "Macintosh");
  dump_profiler(parse_profiler_document(document).get(), tree);
  std::string text(tree.top().text_size(), '\0');
  text.resize(tree.top().write_text(text.data(), 0));
  return text;
}

std::string data_type(const std::string& name, const std::string& value) {
  return "<dict><key>_dataType</key><string>" + name + "</string><key>k</key><string>" + value +
         "</string></dict>\n";
}

const std::string kBoth = "+Macintosh=\n*A=\nk=1\n*B=\nk=2\n-\n";

TEST(ParseProfilerDocument, ReadsAWholeDocument) {
  EXPECT_EQ(tree_of(document_with(framed(data_type("A", "1")), framed(data_type("B", "2")))), kBoth);
}

TEST(ParseProfilerDocument, LosesOneValueToOneByte) {
  EXPECT_EQ(tree_of(document_with(framed(data_type("A", "1\xE9")), framed(data_type("B", "2")))),
            "+Macintosh=\n*A=\nk=1\uFFFD\n*B=\nk=2\n-\n");
}

TEST(ParseProfilerDocument, KeepsWhatOnlyNamesAnEndOrDeclaresEntities) {
  const std::string type = data_type("A", "1");
  for (const char* noise :
       {"<!-- </plist> </array> -->", "<![CDATA[</plist></dict>]]>", "<foo>&lol;</foo></plist>",
        "<!DOCTYPE plist [<!ENTITY lol \"lol\">]>", "<?xml version=\"1.0\"?>"}) {
    EXPECT_EQ(tree_of(document_with(framed(noise + type), framed(data_type("B", "2")))), kBoth) << noise;
  }
  EXPECT_EQ(
      tree_of(document_with(framed(data_type("A", "<![CDATA[</plist>]]>")), framed(data_type("B", "2")))),
      "+Macintosh=\n*A=\nk=</plist>\n*B=\nk=2\n-\n");
}

TEST(ParseProfilerDocument, MissesNothingBehindANul) {
  // Each piece of the document ends at its first NUL, which may leave a list that parses.
  const std::string type = data_type("A", "1");
  EXPECT_EQ(tree_of(document_with(framed(std::string("\0", 1) + type), framed(data_type("B", "2")))), kBoth);
  ProfilerDocument document = document_with(framed(data_type("B", "2")), framed(""));
  for (const size_t place : {size_t{0}, kPrologueLength - 1}) {
    std::string first = framed(type);
    first[place] = '\0';
    document.outputs[0] = output_of(first);
    document.text = splice_outputs(document.outputs, &document.length);
    EXPECT_EQ(tree_of(document), kBoth);
  }
}

TEST(ParseProfilerDocument, MissesNothingBehindAListWithoutItsFrame) {
  const std::string bare = "<?xml version=\"1.0\"?>\n<array>" + data_type("A", "1") + "</array>\n";
  ProfilerDocument document = document_with(framed(data_type("B", "2")), framed(""));
  document.outputs[0] = output_of(bare + std::string(kEpilogueLength, '\n'));
  document.text = splice_outputs(document.outputs, &document.length);
  EXPECT_EQ(tree_of(document), kBoth);
}

TEST(ParseProfilerDocument, ReadsAnOutputWithALongerPrologue) {
  const std::string old_frame =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST "
      "1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<array>\n";
  ASSERT_EQ(old_frame.size(), 181u);
  EXPECT_EQ(tree_of(document_with(old_frame + data_type("A", "1") + kEpilogue,
                                  old_frame + data_type("B", "2") + kEpilogue)),
            kBoth);
}

TEST(ParseProfilerDocument, ReadsOnBehindAnEndInTheMiddle) {
  // The length of the frame is such that the first list's end comes to stand inside the document.
  EXPECT_EQ(
      tree_of(document_with(framed(data_type("A", "1") + "</array></plist>"), framed(data_type("B", "2")))),
      kBoth);
}

TEST(ParseProfilerDocument, ReadsAnOutputThatDiedHalfWay) {
  EXPECT_EQ(
      tree_of(document_with(kPrologue + data_type("A", "1").substr(0, 70), framed(data_type("B", "2")))),
      "+Macintosh=\n*B=\nk=2\n-\n");
}

TEST(ParseProfilerDocument, DropsWhatNestsTooDeeplyAndKeepsTheRest) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<array>";
  const std::string type = data_type("A", "1");
  EXPECT_EQ(tree_of(document_with(framed(type.substr(0, type.size() - 8) + "<key>d</key>" + deep),
                                  framed(data_type("B", "2")))),
            kBoth);
}

TEST(ParseProfilerDocument, OfNothingAtAllIsAnEmptyList) {
  const CFRef<CFArrayRef> list = parse_profiler_document(document_of(std::vector<std::string>(21, "")));
  ASSERT_TRUE(list);
  EXPECT_EQ(CFArrayGetCount(list.get()), 0);
}

TEST(ParseProfilerOutput, PutsANulInANameRight) {
  std::string list = framed(data_type("A", "1"));
  list[list.find("_dataType")] = '\0';
  const CFRef<CFArrayRef> parsed = parse_profiler_output(output_of(list));
  EXPECT_TRUE(find_string(dictionary_at(parsed.get(), 0), CFSTR("_dataType")));
}

TEST(ParseProfilerOutput, SalvagesTheSameWay) {
  const CFRef<CFArrayRef> list = parse_profiler_output(output_of("noise" + framed(data_type("A", "\xFF"))));
  ASSERT_TRUE(list);
  EXPECT_EQ(CFArrayGetCount(list.get()), 1);
}

}  // namespace
