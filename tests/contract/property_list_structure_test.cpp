#include <gtest/gtest.h>

#include "contract/outcome.h"

namespace {

std::string nested(size_t depth, const char* open, const char* close) {
  std::string list;
  for (size_t i = 0; i < depth; ++i) list += open;
  for (size_t i = 0; i < depth; ++i) list += close;
  return list;
}

TEST(PropertyListStructure, AcceptsListsWithoutTheUsualFrame) {
  expect_outcomes_of_lists({
      {R"(<?xml version="1.0"?><array><string>a</string></array>)", R"(array 1 / string "a")"},
      {"<plist><string>a</string></plist>", R"(string "a")"},
      {R"(<?xml version="1.0"?><plist version="9.9"><string>a</string></plist>)", R"(string "a")"},
      {"\n  <?xml version=\"1.0\"?><plist><string>a</string></plist>", R"(string "a")"},
      {"<!-- c --><plist><string>a</string></plist>", R"(string "a")"},
  });
}

TEST(PropertyListStructure, RefusesListsWithoutAValue) {
  expect_outcomes_of_lists({
      {"", "NULL"},
      {"<", "NULL"},
      {"hello world", "NULL"},
      {"\xEF\xBB\xBF", "NULL"},
      {R"(<?xml version="1.0"?>)", "NULL"},
      {R"(<?xml version="1.0"?><plist/>)", "NULL"},
      {"<plist></plist>", "NULL"},
      {"<plist><!-- c --></plist>", "NULL"},
      {"<html><body>x</body></html>", "NULL"},
  });
}

TEST(PropertyListStructure, ReadsMereBlanksAsAnEmptyDictionary) {
  expect_outcomes_of_lists({{" ", "dict 0"}, {"\n", "dict 0"}});
}

TEST(PropertyListStructure, RefusesTextBeforeTheDeclaration) {
  EXPECT_EQ(outcome_of("warning: x\n" + document("<string>a</string>")), "NULL");
}

TEST(PropertyListStructure, IgnoresWhateverFollowsTheList) {
  const std::string list = document("<string>a</string>");
  for (const std::string& rest :
       {std::string("garbage <x>"), std::string(3, '\0'), list, std::string("</plist>")}) {
    EXPECT_EQ(outcome_of(list + rest), R"(string "a")") << rest;
  }
}

TEST(PropertyListStructure, RefusesMoreThanOneValue) {
  expect_refused({"<string>a</string><string>b</string>"});
}

TEST(PropertyListStructure, RefusesAListCutAnywhere) {
  const std::string list = document(
      "<dict><key>a&amp;b</key><array><integer>-1</integer><real>1.5</real><true/></array><!-- c --><key>"
      "d</key><date>2010-01-02T03:04:05Z</date><key>e</key><data>AAEC</data></dict>");
  const size_t whole = list.find("</plist>") + sizeof "</plist>" - 1;
  for (size_t length = 0; length < whole; ++length) {
    EXPECT_EQ(outcome_of(list.substr(0, length)), "NULL") << list.substr(0, length);
  }
  EXPECT_NE(outcome_of(list.substr(0, whole)), "NULL");
}

TEST(PropertyListStructure, RefusesUnknownElements) {
  expect_refused({
      "<array><foo>1</foo></array>",
      "<array><bool>1</bool><string>a</string></array>",
      "<array><STRING>a</STRING></array>",
      "<TRUE/>",
      "<array><></></array>",
  });
}

TEST(PropertyListStructure, RefusesTagsThatDoNotMatch) {
  expect_refused({
      "<array><string>a</array>",
      "<array><string>a</integer></array>",
      "<array><string>a</string></dict>",
      "<string>a<b>c</b></string>",
      "<integer>1<b/></integer>",
      "<string>a</strings>",
      "<string>a</string x>",
      "</array>",
  });
}

TEST(PropertyListStructure, RefusesTextBetweenElements) {
  expect_refused({
      "<array>hello<string>a</string></array>",
      "<dict>hello<key>a</key><string>b</string></dict>",
      std::string_view("<array>\0<string>x</string></array>", 34),
      "<array><![CDATA[a]]></array>",
  });
}

TEST(PropertyListStructure, IgnoresAttributesAndBlanksInTags) {
  expect_outcomes({
      {R"(<string lang="en">a</string>)", R"(string "a")"},
      {R"(<dict x="y"><key a="b">k</key><integer base="10">3</integer></dict>)",
       R"(dict 1 / key "k" / number isFloat=0 sint64=3 double=3)"},
      {"<string >a</string>", R"(string "a")"},
      {"<string>a</string >", R"(string "a")"},
      {"<true />", "true"},
  });
}

TEST(PropertyListStructure, IgnoresCommentsAndInstructionsBetweenElements) {
  expect_outcomes({
      {"<array><!-- c --><string>a</string><!-- <x> --></array>", R"(array 1 / string "a")"},
      {"<dict><!-- c --><key>a</key><!-- c --><string>b</string></dict>", R"(dict 1 / key "a" / string "b")"},
      {"<array><?x y?><string>a</string></array>", R"(array 1 / string "a")"},
      {"<!-- \xFF --><string>a</string>", R"(string "a")"},
  });
  expect_refused({"<string>a<!-- c -->b</string>", "<array><!-- c <string>a</string></array>"});
}

TEST(PropertyListStructure, RefusesADocumentTypeWithDeclarations) {
  expect_outcomes_of_lists(
      {{R"(<?xml version="1.0"?><!DOCTYPE plist [<!ENTITY e "boo">]><plist><string>&e;</string></plist>)",
        "NULL"}});
}

TEST(PropertyListStructure, RefusesDictionariesThatAreNotKeysAndValuesInTurn) {
  expect_refused({
      "<dict><string>a</string></dict>",
      "<dict><key>a</key></dict>",
      "<dict><key>a</key><string>1</string><string>2</string></dict>",
      "<dict><key>a</key><key>b</key><string>x</string></dict>",
  });
}

TEST(PropertyListStructure, ReadsAKeyInPlaceOfAValueAsAString) {
  expect_outcomes({{"<array><key>a</key></array>", R"(array 1 / string "a")"},
                   {"<dict><key>a</key><key>b</key></dict>", R"(dict 1 / key "a" / string "b")"}});
}

TEST(PropertyListStructure, KeepsTheLastOfEqualKeys) {
  expect_outcomes({
      {"<dict><key>a</key><string>first</string><key>b</key><string>x</string><key>a</key><string>last</"
       "string></dict>",
       R"(dict 2 / key "a" / string "last" / key "b" / string "x")"},
      {"<dict><key>a</key><true/><key>a</key><false/><key>a</key><true/></dict>",
       R"(dict 1 / key "a" / true)"},
  });
}

TEST(PropertyListStructure, DistinguishesKeysByCaseAndComposition) {
  expect_outcomes({
      {"<dict><key>A</key><string>1</string><key>a</key><string>2</string></dict>",
       R"(dict 2 / key "A" / string "1" / key "a" / string "2")"},
      {"<dict><key>\xC3\xA4</key><string>composed</string><key>a\xCC\x88</key><string>decomposed</string></"
       "dict>",
       "dict 2 / key \"a\xCC\x88\" / string \"decomposed\" / key \"\xC3\xA4\" / string \"composed\""},
  });
}

TEST(PropertyListStructure, ReadsFiveHundredLevels) {
  EXPECT_EQ(outcome_of(document(nested(500, "<array>", "</array>"))).rfind("array 1 / array 1 / ", 0), 0u);
}

// Apple's newest parser has this limit; older ones recurse without any, so a scan never gives them deeper
// lists.
TEST(PropertyListStructure, RefusesMoreThan512Levels) {
  EXPECT_NE(outcome_of(document(nested(512, "<array>", "</array>"))), "NULL");
  EXPECT_EQ(outcome_of(document(nested(513, "<array>", "</array>"))), "NULL");
  EXPECT_NE(outcome_of(document(nested(511, "<dict><key>a</key>", "</dict>").insert(511 * 18, "<dict/>"))),
            "NULL");
  EXPECT_EQ(outcome_of(document(nested(512, "<dict><key>a</key>", "</dict>").insert(512 * 18, "<dict/>"))),
            "NULL");
}

}  // namespace
