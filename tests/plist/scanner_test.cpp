#include <gtest/gtest.h>

#include "plist/recorder.h"

namespace {

using namespace std::string_view_literals;

struct Scanned {
  plist::ScanResult result;
  Recorder recorder;
};

Scanned scan(std::string_view list) {
  Scanned scanned;
  scanned.recorder = record(list, [&scanned](std::string_view copy, const plist::Events& events) {
    scanned.result = plist::scan(copy, events);
  });
  return scanned;
}

// The events of a list that is read to its end; the error of one that is not.
std::string outcome(std::string_view list) {
  const Scanned scanned = scan(list);
  if (scanned.result.error) return std::string("error: ") + scanned.result.error;
  EXPECT_TRUE(scanned.recorder.balanced()) << list;
  return scanned.recorder.text();
}

bool refused(std::string_view list) { return scan(list).result.error != nullptr; }

std::string repeat(std::string_view text, size_t times) {
  std::string repeated;
  for (size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

const std::string_view kEveryElement =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"x\" \"y\">\n<plist "
    "version=\"1.0\">\n<dict>"
    "<key>a</key><array><string>t</string><integer>-1</integer><real>1.5</real></array>\n"
    "<key>b</key><dict><key/><true/></dict><key>c</key><date>2001-01-01T00:00:01Z</date><!-- c -->"
    "<key>d</key><data>AQID</data><key>e&lt;\xC3\xA4</key><false/></dict>\n</plist>";

TEST(Scanner, ReportsEveryElementInOrder) {
  EXPECT_EQ(outcome(kEveryElement), "{a:[\"t\" -1 1.5] b:{:true} c:@1 d:<1 2 3 > e<\xC3\xA4:false}");
}

TEST(Scanner, EndsWhereTheListEnds) {
  const Scanned scanned = scan(std::string(kEveryElement) + "<junk");
  EXPECT_EQ(scanned.result.error, nullptr);
  EXPECT_EQ(scanned.result.offset, kEveryElement.size());
}

TEST(Scanner, SaysWhereItStopped) {
  const Scanned scanned = scan("<array><string>a</string><foo/></array>");
  EXPECT_STREQ(scanned.result.error, "unknown element");
  EXPECT_EQ(scanned.result.offset, "<array><string>a</string><foo/>"sv.size());
}

TEST(Scanner, RefusesADocumentTypeWithDeclarationsOfItsOwn) {
  EXPECT_FALSE(refused("<!DOCTYPE plist><true/>"));
  EXPECT_TRUE(refused("<!DOCTYPE plist []><true/>"));
}

TEST(Scanner, RefusesAListCutAnywhere) {
  for (size_t length = 0; length < kEveryElement.size(); ++length) {
    EXPECT_TRUE(refused(kEveryElement.substr(0, length))) << length;
  }
}

TEST(Scanner, SurvivesEveryByteInEveryPlace) {
  for (size_t place = 0; place < kEveryElement.size(); ++place) {
    for (const char byte : {'\0', '<', '>', '&', '/', '\x80', '\xFF', ' '}) {
      std::string list(kEveryElement);
      list[place] = byte;
      const Scanned scanned = scan(list);
      EXPECT_TRUE(scanned.result.error || scanned.recorder.balanced()) << list;
      EXPECT_LE(scanned.result.offset, list.size());
    }
  }
}

TEST(Scanner, SaysWhetherATextIsAscii) {
  struct Listener : Recorder {
    void string(plist::Characters text) { ascii += text.ascii ? 'y' : 'n'; }
    std::string ascii;
  } listener;
  plist::scan("<array><string>a</string><string>\xC3\xA4</string><string/><string>&#228;</string></array>",
              plist::events_for(listener));
  EXPECT_EQ(listener.ascii, "ynyn");
}

TEST(Scanner, HandsOutTextsOfTheInputWhereNothingIsResolved) {
  struct Listener : Recorder {
    void string(plist::Characters text) { view = text.bytes; }
    std::string_view view;
  } listener;
  const std::string_view list = "<string>abc</string>";
  plist::scan(list, plist::events_for(listener));
  EXPECT_EQ(listener.view.data(), list.data() + 8);
}

TEST(Scanner, GivesTheSourceOfNumbersAndDates) {
  const Scanned scanned = scan(
      "<array><integer> "
      "-0x10</integer><integer>18446744073709551615</integer><real>1&#46;50</real><date>2001-01-01T00:00:"
      "00Z</date></array>");
  EXPECT_EQ(scanned.recorder.text(), "[-16 18446744073709551615 1.5 @0]");
  EXPECT_EQ(scanned.recorder.sources(),
            (std::vector<std::string>{" -0x10", "18446744073709551615", "1.50", "2001-01-01T00:00:00Z"}));
}

TEST(Scanner, JoinsCharactersAcrossACdataSection) {
  EXPECT_EQ(outcome("<string>\xC3<![CDATA[\xA4]]></string>"), "\"\xC3\xA4\"");
}

TEST(Scanner, ReadsListsInLists) {
  EXPECT_EQ(outcome("<plist><plist><string>a</string></plist></plist>"), "\"a\"");
  EXPECT_EQ(outcome("<array><plist><true/></plist><true/></array>"), "[true true]");
  EXPECT_TRUE(refused("<array><plist/></array>"));
}

TEST(Scanner, EndsTagsAtTheFirstGreaterThan) {
  EXPECT_EQ(outcome("<string a=\"x\">y</string>"), "\"y\"");
  EXPECT_EQ(outcome("<string a=\"x>y\">z</string>"), "\"y\">z\"");
  EXPECT_EQ(outcome("<string a=\"x/\"/>"), "\"\"");
}

TEST(Scanner, KeepsNulsInTextsOnly) {
  EXPECT_EQ(outcome("<array><string>a\0b</string></array>"sv), "[\"a\0b\"]"sv);
  EXPECT_TRUE(refused("<array>\0</array>"sv));
  EXPECT_TRUE(refused("<integer>1\0</integer>"sv));
}

TEST(Scanner, StopsAtTheDepthLimit) {
  EXPECT_EQ(scan(repeat("<array>", 512) + repeat("</array>", 512)).recorder.deepest(), 512u);
  EXPECT_TRUE(refused(repeat("<array>", 513) + repeat("</array>", 513)));
  EXPECT_EQ(scan(repeat("<array>", 100000)).recorder.deepest(), 512u);
  EXPECT_TRUE(refused(repeat("<plist>", 100000)));
}

TEST(Scanner, CountsTheDepthOfOpenContainersOnly) {
  EXPECT_FALSE(refused("<array>" + repeat("<array/><dict></dict>", 2000) + "</array>"));
}

TEST(Scanner, TakesTimeInProportion) {
  const size_t many = 300000;
  EXPECT_FALSE(refused("<string>" + repeat("&amp;", many) + "</string>"));
  EXPECT_FALSE(refused("<string>" + repeat("<![CDATA[]]>", many) + "</string>"));
  EXPECT_FALSE(refused("<string><![CDATA[" + repeat("]", many) + "]]></string>"));
  EXPECT_FALSE(refused(repeat("<!-- -->", many) + "<true/>"));
  EXPECT_FALSE(refused("<real>" + repeat("1", many) + "</real>"));
  EXPECT_FALSE(refused("<integer>" + repeat("0", many) + "</integer>"));
}

}  // namespace
