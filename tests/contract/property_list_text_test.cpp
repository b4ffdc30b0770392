#include <gtest/gtest.h>

#include "contract/outcome.h"

namespace {

using namespace std::string_view_literals;

TEST(PropertyListText, ResolvesEntities) {
  expect_outcomes({
      {"<string>&lt;&gt;&amp;&quot;&apos;</string>", R"(string "<>&\"'")"},
      {"<string>&#65;&#228;</string>", "string \"A\xC3\xA4\""},
      {"<string>&#x41;&#xe4;&#x1F600;</string>", "string \"A\xC3\xA4\xF0\x9F\x98\x80\""},
      {"<string>a&#0;b</string>", R"(string "a\x00b")"},
      {"<string>a&#;b</string>", R"(string "a\x00b")"},
      {"<string>a&#1;b</string>", R"(string "a\x01b")"},
      {"<dict><key>&amp;</key><string/></dict>", R"(dict 1 / key "&" / string "")"},
  });
}

TEST(PropertyListText, RefusesUnknownEntities) {
  expect_refused({
      "<string>a&foo;b</string>",
      "<string>a & b</string>",
      "<string>a&amp b</string>",
      "<string>&#X41;</string>",
      "<string>&#4A;</string>",
      "<string>a&#xD800;b</string>",
      "<string>a&#x110000;b</string>",
      "<string>a&#99999999999;b</string>",
      "<string>a&#65</string>",
  });
}

TEST(PropertyListText, ReadsCdataSections) {
  expect_outcomes({
      {"<string><![CDATA[a <b> & c]]></string>", R"(string "a <b> & c")"},
      {"<string>x<![CDATA[<>]]>y&amp;z</string>", R"(string "x<>y&z")"},
      {"<string><![CDATA[a]]><![CDATA[b]]></string>", R"(string "ab")"},
      {"<string><![CDATA[]]></string>", R"(string "")"},
      {"<string><![CDATA[]]]]></string>", R"(string "]]")"},
      {"<dict><key><![CDATA[a&b]]></key><string/></dict>", R"(dict 1 / key "a&b" / string "")"},
  });
  expect_refused({"<string><![CDATA[a</string>"});
}

TEST(PropertyListText, KeepsGreaterThanAndRefusesLessThan) {
  expect_outcomes({{"<string>a > b</string>", R"(string "a > b")"}});
  expect_refused({"<string>a < b</string>"});
}

TEST(PropertyListText, ReadsEmptyElementsAsEmptyTexts) {
  expect_outcomes({
      {"<array><string></string><string/><string /></array>",
       R"(array 3 / string "" / string "" / string "")"},
      {"<dict><key></key><string>x</string></dict>", R"(dict 1 / key "" / string "x")"},
      {"<dict><key/><string>x</string></dict>", R"(dict 1 / key "" / string "x")"},
  });
}

TEST(PropertyListText, KeepsWhiteSpaceAndLineEnds) {
  expect_outcomes({
      {"<array><string>  a  </string><string>\n\ta\r\n</string><string> </string></array>",
       R"(array 3 / string "  a  " / string "\x0a\x09a\x0d\x0a" / string " ")"},
      {"<dict><key> a </key><string>x</string></dict>", R"(dict 1 / key " a " / string "x")"},
      {"<string>a\rb</string>", R"(string "a\x0db")"},
      {"<array>\r\n<string>a\r\nb</string>\r\n</array>\r\n", R"(array 1 / string "a\x0d\x0ab")"},
  });
}

TEST(PropertyListText, KeepsControlCharactersAndNuls) {
  expect_outcomes({
      {"<string>a\x01"
       "b</string>",
       R"(string "a\x01b")"},
      {"<string>a\bb\x1B"
       "c</string>",
       R"(string "a\x08b\x1bc")"},
      {"<string>a\x7F"
       "b</string>",
       R"(string "a\x7fb")"},
      {"<string>a\xEF\xBF\xBE"
       "b</string>",
       "string \"a\xEF\xBF\xBE"
       "b\""},
      {"<string>a\0b</string>"sv, R"(string "a\x00b")"},
      {"<dict><key>a\0b</key><string>x</string></dict>"sv, R"(dict 1 / key "a\x00b" / string "x")"},
  });
}

TEST(PropertyListText, LeavesDecomposedLettersDecomposed) {
  expect_outcomes({{"<string>a\xCC\x88</string>", "string \"a\xCC\x88\""}});
}

TEST(PropertyListText, RefusesTheWholeListForOneInvalidByte) {
  expect_refused({
      "<string>a\xE4"
      "b</string>",
      "<array><string>ok</string><string>\xE4</string></array>",
      "<dict><key>\xE4</key><string>x</string></dict>",
      "<string>a\xC3</string>",
      "<string>a\xC0\xAF"
      "b</string>",
      "<string>a\xED\xA0\x80"
      "b</string>",
      "<string>\xF4\x90\x80\x80</string>",
      "<string>\x80</string>",
  });
}

TEST(PropertyListText, AcceptsAMarkAndADeclarationOfUtf8) {
  expect_outcomes_of_lists({
      {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist><string>a</string></plist>",
       R"(string "a")"},
      {"<?xml version=\"1.0\" encoding=\"utf-8\"?><plist><string>a\xC3\xA4</string></plist>",
       "string \"a\xC3\xA4\""},
      {"<?xml version='1.0' encoding='UTF-8'?><plist><string>a\xC3\xA4</string></plist>",
       "string \"a\xC3\xA4\""},
  });
}

TEST(PropertyListText, RefusesUnknownAndWrongDeclarations) {
  expect_outcomes_of_lists({
      {R"(<?xml version="1.0" encoding="FOO-8"?><plist><string>ab</string></plist>)", "NULL"},
      {R"(<?xml version="1.0" encoding="UTF-16"?><plist><string>ab</string></plist>)", "NULL"},
  });
}

}  // namespace
