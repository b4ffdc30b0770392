#include "inv/base/characters.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// All characters of a kind, out of 256.
template <typename Kind>
std::string all_of(Kind is_kind) {
  std::string found;
  for (int code = 0; code < 256; ++code) {
    if (is_kind(static_cast<char>(code))) found += static_cast<char>(code);
  }
  return found;
}

const std::string kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::string kLower = "abcdefghijklmnopqrstuvwxyz";
const std::string kDigits = "0123456789";

}  // namespace

TEST(Characters, AreOfTheirKindInAsciiOnly) {
  EXPECT_EQ(all_of(inv::is_upper), kUpper);
  EXPECT_EQ(all_of(inv::is_lower), kLower);
  EXPECT_EQ(all_of(inv::is_letter), kUpper + kLower);
  EXPECT_EQ(all_of(inv::is_digit), kDigits);
  EXPECT_EQ(all_of(inv::is_letter_or_digit), kDigits + kUpper + kLower);
  EXPECT_EQ(all_of(inv::is_hex_digit), kDigits + "ABCDEFabcdef");
}

TEST(Characters, OfControlAreThoseBelowTheBlankAndDelete) {
  const std::string control = all_of(inv::is_control);
  EXPECT_EQ(control.size(), 33u);
  EXPECT_EQ(control.front(), '\0');
  EXPECT_EQ(control[31], '\x1F');
  EXPECT_EQ(control.back(), '\x7F');
}

TEST(LowerCase, LeavesAllButCapitals) {
  std::string text = "@AZ[`az{\xC4";
  for (char& character : text) character = inv::lower_case(character);
  EXPECT_EQ(text, "@az[`az{\xC4");
}

TEST(StartsAndEndsWith, CompareTheWholeOfTheOther) {
  EXPECT_TRUE(inv::starts_with("token", "to"));
  EXPECT_TRUE(inv::starts_with("token", ""));
  EXPECT_TRUE(inv::starts_with("token", "token"));
  EXPECT_FALSE(inv::starts_with("token", "tokens"));
  EXPECT_FALSE(inv::starts_with("token", "ok"));
  EXPECT_TRUE(inv::ends_with("token", "en"));
  EXPECT_TRUE(inv::ends_with("token", ""));
  EXPECT_TRUE(inv::ends_with("token", "token"));
  EXPECT_FALSE(inv::ends_with("token", "atoken"));
  EXPECT_FALSE(inv::ends_with("token", "ke"));
}
