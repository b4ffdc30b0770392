#include "plist/dates.h"

#include <gtest/gtest.h>

namespace {

constexpr double kDay = 86400;

TEST(PlistDates, FollowTheGregorianCalendar) {
  EXPECT_EQ(plist::parse_date("2001-01-01T00:00:00Z"), 0);
  EXPECT_EQ(plist::parse_date("2000-12-31T23:59:59Z"), -1);
  EXPECT_EQ(*plist::parse_date("2000-03-01T00:00:00Z") - *plist::parse_date("2000-02-28T00:00:00Z"),
            2 * kDay);
  EXPECT_EQ(*plist::parse_date("1900-03-01T00:00:00Z") - *plist::parse_date("1900-02-28T00:00:00Z"), kDay);
  EXPECT_EQ(*plist::parse_date("2401-01-01T00:00:00Z"), 146097 * kDay);
  EXPECT_EQ(*plist::parse_date("-0399-01-01T00:00:00Z"), -6 * 146097 * kDay);
}

TEST(PlistDates, RollOverFromMonthToMonth) {
  EXPECT_EQ(plist::parse_date("2010-14-01T00:00:00Z"), plist::parse_date("2011-02-01T00:00:00Z"));
  EXPECT_EQ(plist::parse_date("2010-00-01T00:00:00Z"), plist::parse_date("2010-01-01T00:00:00Z"));
  EXPECT_EQ(plist::parse_date("2010-01-99T99:99:99Z"), plist::parse_date("2010-04-13T04:40:39Z"));
}

TEST(PlistDates, HoldNothingButTheDate) {
  for (const char* text :
       {"2010-01-01T00:00:00Z ", "2010-01-01T00:00:00ZZ", " 2010-01-01T00:00:00Z", "2010-01-01T00:00:00"})
    EXPECT_FALSE(plist::parse_date(text)) << text;
}

TEST(PlistDates, HaveNineDigitsOfYearAtMost) {
  EXPECT_TRUE(plist::parse_date("999999999-01-01T00:00:00Z"));
  EXPECT_FALSE(plist::parse_date("1000000000-01-01T00:00:00Z"));
}

}  // namespace
