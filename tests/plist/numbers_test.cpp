#include "plist/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(Integers, KeepTheirBitsFromTwoTo63On) {
  const auto largest = plist::parse_integer("18446744073709551615");
  ASSERT_TRUE(largest);
  EXPECT_EQ(largest->value, -1);
  EXPECT_TRUE(largest->above_int64);
  const auto lowest = plist::parse_integer("-9223372036854775808");
  ASSERT_TRUE(lowest);
  EXPECT_EQ(lowest->value, INT64_MIN);
  EXPECT_FALSE(lowest->above_int64);
}

TEST(Integers, MayHaveBlanksAroundTheirSignOnly) {
  EXPECT_EQ(plist::parse_integer(" \t\r\n- \n5")->value, -5);
  EXPECT_FALSE(plist::parse_integer("5 "));
  EXPECT_FALSE(plist::parse_integer(""));
}

TEST(Reals, OfManyDigitsAreRead) {
  EXPECT_EQ(plist::parse_real(std::string(400, '0') + "1.5"), 1.5);
  EXPECT_EQ(plist::parse_real("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_TRUE(std::isinf(plist::parse_real(std::string(400, '9')).value_or(0)));
}

TEST(Reals, HoldNothingButTheNumber) {
  EXPECT_FALSE(plist::parse_real(std::string_view("1.5\0", 4)));
  EXPECT_FALSE(plist::parse_real("1.5 "));
  EXPECT_FALSE(plist::parse_real(" 1.5"));
  EXPECT_FALSE(plist::parse_real("+nan"));
  EXPECT_FALSE(plist::parse_real("1e"));
  EXPECT_FALSE(plist::parse_real("1e+"));
  EXPECT_FALSE(plist::parse_real("."));
}

}  // namespace
