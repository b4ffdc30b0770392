#include "inv/base/nearest.h"

#include <gtest/gtest.h>

namespace {

const std::vector<std::string_view> kCommands = {"summary", "show", "get", "list", "verify", "export"};

TEST(Nearest, FindsWhatWasMistyped) {
  EXPECT_EQ(inv::nearest("sumary", kCommands), "summary");   // a letter is missing
  EXPECT_EQ(inv::nearest("shoow", kCommands), "show");       // there is one too many
  EXPECT_EQ(inv::nearest("verifz", kCommands), "verify");    // another one
  EXPECT_EQ(inv::nearest("lsit", kCommands), "list");        // two in the wrong order are one difference
  EXPECT_EQ(inv::nearest("SUMMARY", kCommands), "summary");  // capitals do not count
  EXPECT_EQ(inv::nearest("summary", kCommands), "summary");
}

TEST(Nearest, IsNothingWhenMostOfItDiffers) {
  EXPECT_EQ(inv::nearest("frobnicate", kCommands), "");
  EXPECT_EQ(inv::nearest("got", kCommands), "get");
  EXPECT_EQ(inv::nearest("goo", kCommands), "");
  EXPECT_EQ(inv::nearest("exprot", kCommands), "export");
  EXPECT_EQ(inv::nearest("exxxrt", kCommands), "export");
  EXPECT_EQ(inv::nearest("exxxxt", kCommands), "");
  EXPECT_EQ(inv::nearest("", {}), "");
}

TEST(Nearest, PrefersTheLeastDifferentAndThenTheFirst) {
  EXPECT_EQ(inv::nearest("serials", {"serial-x", "serial", "serials-"}), "serial");
  EXPECT_EQ(inv::nearest("ab", {"abc", "ab"}), "ab");
}

TEST(Nearest, IsNotLookedForFarAndWide) {
  const std::string longest(200, 'x');
  EXPECT_EQ(inv::nearest(longest, {longest}), longest);
  EXPECT_EQ(inv::nearest(longest + "x", {longest}), "");
}

TEST(DidYouMean, AsksOnlyWhenThereIsAWord) {
  EXPECT_EQ(inv::did_you_mean("show"), "; did you mean show?");
  EXPECT_EQ(inv::did_you_mean(""), "");
}

}  // namespace
