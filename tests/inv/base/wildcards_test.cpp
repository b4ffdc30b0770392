#include "inv/base/wildcards.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using inv::matches;
using inv::Wildcards;

TEST(Wildcards, TextsMatchThemselves) {
  EXPECT_TRUE(matches("imac", "imac"));
  EXPECT_TRUE(matches("", ""));
  for (const char* text : {"IMAC", "imac2", "ima", "2imac", ""}) EXPECT_FALSE(matches("imac", text)) << text;
}

TEST(Wildcards, AStarMatchesAnyText) {
  EXPECT_TRUE(matches("*", ""));
  EXPECT_TRUE(matches("a*b", "ab"));
  EXPECT_TRUE(matches("a*c*", "abcabd"));
  EXPECT_TRUE(matches("*.app", "x.app.app"));
  EXPECT_TRUE(matches("**", "x"));
  EXPECT_FALSE(matches("", "x"));
  EXPECT_FALSE(matches("a*b", "a"));
  EXPECT_FALSE(matches("*.app", "x.apps"));
  EXPECT_FALSE(matches("*m*m*", "imac"));
}

TEST(Wildcards, AMarkMatchesOneByteWhereItIsWanted) {
  EXPECT_TRUE(matches("im?c", "imac", Wildcards::star_and_mark));
  EXPECT_TRUE(matches("????", "imac", Wildcards::star_and_mark));
  EXPECT_FALSE(matches("???", "imac", Wildcards::star_and_mark));
  EXPECT_FALSE(matches("?????", "imac", Wildcards::star_and_mark));
  EXPECT_TRUE(matches("?*", "i", Wildcards::star_and_mark));
  EXPECT_FALSE(matches("?*", "", Wildcards::star_and_mark));
  EXPECT_FALSE(matches("im?c", "imac"));
  EXPECT_TRUE(matches("im?c", "im?c"));
}

TEST(Wildcards, ManyStarsStayFast) {
  std::string pattern;
  for (int i = 0; i < 2000; ++i) pattern += "a*";
  EXPECT_FALSE(matches(pattern + "b", std::string(20'000, 'a')));
}

}  // namespace
