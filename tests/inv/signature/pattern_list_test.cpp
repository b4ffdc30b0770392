#include "inv/signature/pattern_list.h"

#include <gtest/gtest.h>

namespace {

using inv::matches_list;

TEST(PatternList, HasTheWildcardsOfOpenSsh) {
  EXPECT_TRUE(matches_list("imac", "imac"));
  EXPECT_TRUE(matches_list("im?c@*.example.com", "imac@studio.example.com"));
  EXPECT_FALSE(matches_list("im?c@*.example.com", "imac@example.com"));
}

TEST(PatternList, OneOfTheListIsEnough) {
  EXPECT_TRUE(matches_list("imac,mini", "imac"));
  EXPECT_TRUE(matches_list("imac,mini", "mini"));
  EXPECT_TRUE(matches_list("a,,mini,", "mini"));
  EXPECT_FALSE(matches_list("imac,mini", "imac,mini"));
  EXPECT_FALSE(matches_list("imac, mini", "mini"));
  EXPECT_FALSE(matches_list("", "imac"));
}

TEST(PatternList, OneNegatedPatternRefusesWhateverTheOthersSay) {
  EXPECT_FALSE(matches_list("*,!imac", "imac"));
  EXPECT_FALSE(matches_list("!imac,*", "imac"));
  EXPECT_TRUE(matches_list("!imac,*", "mini"));
  EXPECT_TRUE(matches_list("*,!mini?", "mini"));
  EXPECT_FALSE(matches_list("!imac", "mini"));  // no pattern matches
}

}  // namespace
