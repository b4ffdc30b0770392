#include <gtest/gtest.h>

#include <algorithm>

#include "plist/recorder.h"

namespace {

using namespace std::string_view_literals;

Recorder scan_leniently(std::string_view list, size_t depth_limit = plist::kMaximumDepth) {
  return record(list, [depth_limit](std::string_view copy, const plist::Events& events) {
    plist::scan_leniently(copy, events, depth_limit);
  });
}

std::string salvaged(std::string_view list) {
  const Recorder recorder = scan_leniently(list);
  EXPECT_TRUE(recorder.balanced()) << list;
  return recorder.text();
}

std::string repeat(std::string_view text, size_t times) {
  std::string repeated;
  for (size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

const std::string_view kProfilerList = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
	<dict>
		<key>_dataType</key>
		<string>SPPrintersDataType</string>
		<key>_items</key>
		<array>
			<dict>
				<key>_name</key>
				<string>Laser &amp; Copy</string>
				<key>default</key>
				<true/>
				<key>fonts</key>
				<integer>12</integer>
				<key>added</key>
				<date>2010-01-02T03:04:05Z</date>
				<key>trays</key>
				<array>
					<string>upper</string>
					<string>lower</string>
				</array>
			</dict>
			<dict>
				<key>_name</key>
				<string>Plotter</string>
				<key>scale</key>
				<real>1.5</real>
				<key>blob</key>
				<data>AAEC</data>
			</dict>
		</array>
	</dict>
</array>
</plist>
)";

TEST(LenientScanner, ReadsAWholeListAsTheStrictOneDoes) {
  const Recorder strict = record(kProfilerList, plist::scan);
  EXPECT_EQ(salvaged(kProfilerList), strict.text());
  EXPECT_EQ(scan_leniently(kProfilerList).sources(), strict.sources());
}

// Up to where the strict one stops, except for keys where values should be, which the profiler never prints.
TEST(LenientScanner, BeginsADamagedListAsTheStrictOneDoes) {
  for (size_t place = kProfilerList.find("<array>"); place < kProfilerList.size(); ++place) {
    for (const char byte : {'\0', '>', '&', 'x', ' '}) {
      std::string list(kProfilerList);
      list[place] = byte;
      plist::ScanResult result;
      const Recorder strict = record(list, [&result](std::string_view copy, const plist::Events& events) {
        result = plist::scan(copy, events);
      });
      if (result.error) continue;
      EXPECT_EQ(salvaged(list), strict.text()) << list;
    }
  }
}

TEST(LenientScanner, SkipsWhatComesBeforeTheList) {
  EXPECT_EQ(
      salvaged(
          "12:00 driver[7] <warning> <array> &\n<?xml version=\"1.0\"?><plist><string>a</string></plist>"),
      "\"a\"");
  EXPECT_EQ(salvaged("<string>x</string><plist><string>a</string></plist>"), "\"a\"");
  EXPECT_EQ(salvaged("\0\0<plist><string>a</string></plist>"sv), "\"a\"");
  EXPECT_EQ(salvaged("<array><string>a</string></array>"), "[\"a\"]");
}

TEST(LenientScanner, SkipsTextBetweenElements) {
  EXPECT_EQ(salvaged("<plist><array>log line <string>a</string> a < b & c > d \0<true/></array></plist>"sv),
            "[\"a\" true]");
}

TEST(LenientScanner, ReplacesInvalidBytes) {
  EXPECT_EQ(salvaged("<string>B\xFCro \xC3\xA4</string>"), "\"B\xEF\xBF\xBDro \xC3\xA4\"");
  EXPECT_EQ(salvaged("<dict><key>\xE4</key><true/></dict>"), "{\xEF\xBF\xBD:true}");
  EXPECT_EQ(salvaged("<string>\xF0\x9F\x98</string>"), "\"\xEF\xBF\xBD\"");
}

TEST(LenientScanner, KeepsUnknownEntitiesAsTheirText) {
  EXPECT_EQ(salvaged("<string>a&foo;b & c &#xD800; &amp; &lt</string>"), "\"a&foo;b & c &#xD800; & &lt\"");
}

TEST(LenientScanner, KeepsALessThanThatBeginsNoTag) {
  EXPECT_EQ(salvaged("<string>a < b</string>"), "\"a < b\"");
  EXPECT_EQ(salvaged("<string>a<<b</string>"), "\"a<<b\"");
}

TEST(LenientScanner, ReadsCdataAndSkipsComments) {
  EXPECT_EQ(salvaged("<string>a<!-- <b> -->c<![CDATA[<d>&]]></string>"), "\"ac<d>&\"");
  EXPECT_EQ(salvaged("<array><!-- <string>a</string> --><true/><![CDATA[<true/>]]></array>"), "[true]");
}

TEST(LenientScanner, DropsUnreadableValuesWithTheirKeys) {
  for (const char* value : {"<integer>abc</integer>", "<integer/>", "<integer>5", "<real>1,5</real>",
                            "<real/>", "<date>yesterday</date>", "<date/>", "<data/>", "<string>open",
                            "<true>x</true>", "<foo>1</foo>", "<foo/>", ""}) {
    const std::string list = "<dict><key>a</key><true/><key>b</key>" + std::string(value) +
                             "<key>c</key><integer>3</integer></dict>";
    EXPECT_EQ(salvaged(list), "{a:true c:3}") << value;
  }
  EXPECT_EQ(salvaged("<array><integer>x</integer><true/></array>"), "[true]");
  EXPECT_EQ(salvaged("<dict><key>a</key><integer>x</integer><string>b</string></dict>"), "{}");
}

TEST(LenientScanner, DropsValuesWithoutAKey) {
  EXPECT_EQ(salvaged("<dict><string>a</string><array><string>b</string></array><key>c</key><true/></dict>"),
            "{c:true}");
  EXPECT_EQ(salvaged("<dict><key>a</key><true/><dict><key>x</key><true/></dict><key>c</key><true/></dict>"),
            "{a:true c:true}");
}

TEST(LenientScanner, TakesTheLaterOfTwoKeys) {
  EXPECT_EQ(salvaged("<dict><key>a</key><key>b</key><true/></dict>"), "{b:true}");
}

TEST(LenientScanner, PutsOneDamagedByteOfATagRight) {
  const std::string whole =
      "<array><dict><key>a</key><string>b</string>\n<key>c</key><integer>1</integer>\n</dict>\n<true/></"
      "array>";
  const std::string expected = salvaged(whole);
  for (const std::string_view tag :
       {"<dict>", "</dict>", "<key>", "</key>", "<string>", "</string>", "<integer>", "</integer>"}) {
    for (size_t place = 0; place < tag.size(); ++place) {
      for (const char byte : {'?', '&', '\0', '\xFF', '<', ' ', '\n'}) {
        std::string list = whole;
        list[list.find(tag) + place] = byte;
        EXPECT_EQ(salvaged(list), expected) << list;
      }
    }
  }
}

TEST(LenientScanner, PutsOneByteTooManyOrTooFewOfATagRight) {
  const std::string whole =
      "<array>\n<dict>\n<key>a</key>\n<array>\n<true/>\n</array>\n</dict>\n<string>b</string>\n</array>\n";
  const std::string expected = salvaged(whole);
  for (const std::string_view tag : {"\n<array>", "</array>", "<dict>", "</dict>", "</key>", "</string>"}) {
    for (size_t place = 1; place < tag.size() - 1; ++place) {
      // Without its slash it is another tag.
      if (tag[place] == '/') continue;
      std::string list = whole;
      list.erase(list.find(tag) + place, 1);
      EXPECT_EQ(salvaged(list), expected) << list;
      // Right after the "<" it would look like a damaged slash.
      if (tag[place - 1] == '<') continue;
      list = whole;
      list.insert(list.find(tag) + place, 1, '\xFF');
      EXPECT_EQ(salvaged(list), expected) << list;
    }
  }
}

TEST(LenientScanner, TreatsALessThanBeforeANameLikeATagsAsText) {
  for (const std::string_view text : {"<dataType", "a <dictator", "b<arrayed", "<integers", "<realm"}) {
    EXPECT_EQ(salvaged("<dict><key>" + std::string(text) + "</key><string>" + std::string(text) +
                       "</string><key>k</key><true/></dict>"),
              "{" + std::string(text) + ":\"" + std::string(text) + "\" k:true}");
  }
}

TEST(LenientScanner, SkipsALessThanBeforeATag) {
  EXPECT_EQ(salvaged("<array><<dict><key>a</key><<true/></dict><</array>"), "[{a:true}]");
  EXPECT_EQ(salvaged("<dict><key>a</key><<dict></dict></dict>"), "{a:{}}");
  EXPECT_EQ(salvaged("<array><< <array></array></array>"), "[[]]");
  EXPECT_EQ(salvaged("<array><string<<string>a</string></array>"), "[\"a\"]");
}

TEST(LenientScanner, EndsUnclosedContainersWithTheOneAround) {
  EXPECT_EQ(salvaged("<array><dict><key>a</key><array><true/></dict><false/></array>"), "[{a:[true]} false]");
}

TEST(LenientScanner, IgnoresCloseTagsOfWhatIsNotOpen) {
  EXPECT_EQ(salvaged("</dict><array></dict></string><true/></array></array>"), "[true]");
}

TEST(LenientScanner, GoesOnAfterTheEndOfAList) {
  EXPECT_EQ(salvaged("<plist><array><true/></plist><false/></array>"), "[true false]");
  EXPECT_EQ(salvaged("<plist><array><true/></array></plist>\n<?xml version=\"1.0\"?><plist><array/></plist>"),
            "[true] []");
}

TEST(LenientScanner, ClosesACutListAfterItsLastWholeElement) {
  EXPECT_EQ(salvaged("<plist><array><dict><key>a</key><string>b</string><key>c</key><string>d"),
            "[{a:\"b\"}]");
  EXPECT_EQ(salvaged("<plist><array><string>a</string><string>b</stri"), "[\"a\"]");
  EXPECT_EQ(salvaged("<plist><dict><key>a</key><array>"), "{a:[]}");
  EXPECT_EQ(salvaged(""), "");
}

TEST(LenientScanner, LosesNothingThatWasWholeWhenCut) {
  const std::string whole = salvaged(kProfilerList);
  for (size_t length = 0; length < kProfilerList.size(); ++length) {
    std::string cut = salvaged(kProfilerList.substr(0, length));
    while (!cut.empty() && (cut.back() == ']' || cut.back() == '}')) cut.pop_back();
    EXPECT_EQ(cut, whole.substr(0, cut.size())) << length;
  }
}

TEST(LenientScanner, DropsWhatIsNestedTooDeeply) {
  const auto text = [](std::string_view list) { return scan_leniently(list, 2).text(); };
  EXPECT_EQ(text("<array><array><array><true/></array><true/></array></array>"), "[[true]]");
  EXPECT_EQ(text("<dict><key>a</key><dict><key>b</key><dict><key>c</key><true/></dict><key>d</key><true/></"
                 "dict></dict>"),
            "{a:{d:true}}");
  EXPECT_EQ(text("<array><array><array><dict><array/></dict><array></array></array><true/></array></array>"),
            "[[true]]");
  EXPECT_EQ(text("<array><array><dict><key>x</key><true/></array><true/></array>"), "[[] true]");
  EXPECT_EQ(scan_leniently(repeat("<array>", 100000) + "<true/>" + repeat("</array>", 100000)).deepest(),
            512u);
  EXPECT_TRUE(scan_leniently(repeat("<array>", 100000)).balanced());
}

TEST(LenientScanner, SurvivesAndLosesLittleToOneByteAnywhere) {
  const std::string whole = salvaged(kProfilerList);
  const auto values = [](const std::string& text) { return std::count(text.begin(), text.end(), ':'); };
  std::vector<std::ptrdiff_t> losses;
  for (size_t place = 0; place < kProfilerList.size(); ++place) {
    for (const char byte : {'\0', '<', '>', '&', '\x80', '\xFF'}) {
      std::string list(kProfilerList);
      list[place] = byte;
      losses.push_back(values(whole) - values(salvaged(list)));
    }
  }
  std::sort(losses.begin(), losses.end());
  EXPECT_LE(losses[losses.size() * 97 / 100], 1);
}

TEST(LenientScanner, TakesTimeInProportion) {
  const size_t many = 300000;
  for (const std::string_view part :
       {"<", "<![CDATA[", "<!--", "<?", "&", "&#", "<array>", "</dict>", "<string>", "<string", "<key>a<",
        "<foo>", "</foo>", "<string><![CDATA[", "<key><!--", "\xF0\x9F"}) {
    EXPECT_TRUE(scan_leniently(repeat(part, many)).balanced()) << part;
    EXPECT_TRUE(scan_leniently("<string>" + repeat(part, many)).balanced()) << part;
    EXPECT_TRUE(scan_leniently(repeat("<array>", 500) + repeat(part, many)).balanced()) << part;
  }
}

}  // namespace
