#include "inv/base/calendars.h"

#include <gtest/gtest.h>

namespace {

using inv::days_since_1970;

constexpr int64_t kAutumnDay = 20'778;  // 2026-11-21
constexpr int64_t kLeapDay = 19'782;    // 2024-02-29

TEST(Calendars, EachHasTheSameDaysUnderItsOwnDates) {
  struct {
    const char* calendar;
    inv::CalendarDate autumn_day;
    inv::CalendarDate leap_day;
  } const rows[] = {
      {"gregorian", {2026, 11, 21}, {2024, 2, 29}},
      {"iso8601", {2026, 11, 21}, {2024, 2, 29}},
      {"buddhist", {2569, 11, 21}, {2567, 2, 29}},
      {"japanese", {8, 11, 21}, {6, 2, 29}},
      {"roc", {115, 11, 21}, {113, 2, 29}},
      {"persian", {1405, 8, 30}, {1402, 12, 10}},
      {"islamic-umalqura", {1448, 6, 11}, {1445, 8, 19}},
      {"islamic-civil", {1448, 6, 10}, {1445, 8, 19}},
      {"islamic-tbla", {1448, 6, 11}, {1445, 8, 20}},
      {"coptic", {1743, 3, 12}, {1740, 6, 21}},
      {"indian", {1948, 8, 30}, {1945, 12, 10}},
      {"hebrew", {5787, 3, 11}, {5784, 6, 20}},
      {"ethiopic", {2019, 3, 12}, {2016, 6, 21}},
      {"ethiopic-amete-alem", {7519, 3, 12}, {7516, 6, 21}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(days_since_1970(row.autumn_day, row.calendar), kAutumnDay) << row.calendar;
    EXPECT_EQ(days_since_1970(row.leap_day, row.calendar), kLeapDay) << row.calendar;
  }
}

// The turns of years, long and short ones: a new year's day and the day before it.
TEST(Calendars, YearsHaveTheirLengths) {
  struct {
    const char* calendar;
    inv::CalendarDate last_day;
    inv::CalendarDate first_day;
  } const rows[] = {
      {"gregorian", {2023, 12, 31}, {2024, 1, 1}},
      {"gregorian", {2024, 12, 31}, {2025, 1, 1}},
      {"gregorian", {2025, 12, 31}, {2026, 1, 1}},
      {"gregorian", {2026, 12, 31}, {2027, 1, 1}},
      {"buddhist", {2566, 12, 31}, {2567, 1, 1}},
      {"buddhist", {2567, 12, 31}, {2568, 1, 1}},
      {"buddhist", {2568, 12, 31}, {2569, 1, 1}},
      {"buddhist", {2569, 12, 31}, {2570, 1, 1}},
      {"roc", {112, 12, 31}, {113, 1, 1}},
      {"roc", {113, 12, 31}, {114, 1, 1}},
      {"roc", {114, 12, 31}, {115, 1, 1}},
      {"roc", {115, 12, 31}, {116, 1, 1}},
      {"persian", {1401, 12, 29}, {1402, 1, 1}},
      {"persian", {1402, 12, 29}, {1403, 1, 1}},
      {"persian", {1403, 12, 30}, {1404, 1, 1}},
      {"persian", {1404, 12, 29}, {1405, 1, 1}},
      {"islamic-umalqura", {1444, 12, 30}, {1445, 1, 1}},
      {"islamic-umalqura", {1445, 12, 30}, {1446, 1, 1}},
      {"islamic-umalqura", {1446, 12, 29}, {1447, 1, 1}},
      {"islamic-umalqura", {1447, 12, 29}, {1448, 1, 1}},
      {"islamic-civil", {1444, 12, 29}, {1445, 1, 1}},
      {"islamic-civil", {1445, 12, 30}, {1446, 1, 1}},
      {"islamic-civil", {1446, 12, 29}, {1447, 1, 1}},
      {"islamic-civil", {1447, 12, 30}, {1448, 1, 1}},
      {"islamic-tbla", {1444, 12, 29}, {1445, 1, 1}},
      {"islamic-tbla", {1445, 12, 30}, {1446, 1, 1}},
      {"islamic-tbla", {1446, 12, 29}, {1447, 1, 1}},
      {"islamic-tbla", {1447, 12, 30}, {1448, 1, 1}},
      {"coptic", {1739, 13, 6}, {1740, 1, 1}},
      {"coptic", {1740, 13, 5}, {1741, 1, 1}},
      {"coptic", {1741, 13, 5}, {1742, 1, 1}},
      {"coptic", {1742, 13, 5}, {1743, 1, 1}},
      {"indian", {1944, 12, 30}, {1945, 1, 1}},
      {"indian", {1945, 12, 30}, {1946, 1, 1}},
      {"indian", {1946, 12, 30}, {1947, 1, 1}},
      {"indian", {1947, 12, 30}, {1948, 1, 1}},
      {"hebrew", {5783, 12, 29}, {5784, 1, 1}},
      {"hebrew", {5784, 13, 29}, {5785, 1, 1}},
      {"hebrew", {5785, 12, 29}, {5786, 1, 1}},
      {"hebrew", {5786, 12, 29}, {5787, 1, 1}},
      {"hebrew", {5787, 13, 29}, {5788, 1, 1}},
      {"hebrew", {5788, 12, 29}, {5789, 1, 1}},
      {"hebrew", {5789, 12, 29}, {5790, 1, 1}},
      {"ethiopic", {2015, 13, 6}, {2016, 1, 1}},
      {"ethiopic", {2016, 13, 5}, {2017, 1, 1}},
      {"ethiopic", {2017, 13, 5}, {2018, 1, 1}},
      {"ethiopic", {2018, 13, 5}, {2019, 1, 1}},
      {"ethiopic-amete-alem", {7515, 13, 6}, {7516, 1, 1}},
      {"ethiopic-amete-alem", {7516, 13, 5}, {7517, 1, 1}},
      {"ethiopic-amete-alem", {7517, 13, 5}, {7518, 1, 1}},
      {"ethiopic-amete-alem", {7518, 13, 5}, {7519, 1, 1}},
  };
  for (const auto& row : rows) {
    const auto last = days_since_1970(row.last_day, row.calendar);
    const auto first = days_since_1970(row.first_day, row.calendar);
    ASSERT_TRUE(last && first) << row.calendar << " " << row.first_day.year;
    EXPECT_EQ(*first - *last, 1) << row.calendar << " " << row.first_day.year;
    const inv::CalendarDate beyond = {row.last_day.year, row.last_day.month, row.last_day.day + 1};
    EXPECT_FALSE(days_since_1970(beyond, row.calendar)) << row.calendar << " " << row.last_day.year;
  }
}

TEST(Calendars, WithoutANameTheYearDecides) {
  const inv::CalendarDate dates[] = {
      {2026, 11, 21}, {2569, 11, 21}, {8, 11, 21},   {115, 11, 21}, {1405, 8, 30},
      {1448, 6, 11},  {1743, 3, 12},  {1948, 8, 30}, {5787, 3, 11}, {7519, 3, 12},
  };
  for (const inv::CalendarDate& date : dates) EXPECT_EQ(days_since_1970(date, ""), kAutumnDay) << date.year;
}

TEST(Calendars, AYearThatTheNamedOneCannotHaveIsOfAnother) {
  // The digits of an Arabic or Persian locale are not ASCII, so the scanner writes a Gregorian date.
  EXPECT_EQ(days_since_1970({2026, 11, 21}, "islamic-umalqura"), kAutumnDay);
  EXPECT_EQ(days_since_1970({2026, 11, 21}, "persian"), kAutumnDay);
  EXPECT_EQ(days_since_1970({2026, 11, 21}, "no such calendar"), kAutumnDay);
}

TEST(Calendars, ErasOfJapanFollowEachOther) {
  EXPECT_EQ(days_since_1970({24, 1, 18}, "japanese"), 15'357);  // Heisei: 2012-01-18
  EXPECT_EQ(days_since_1970({31, 4, 30}, "japanese"), 18'016);  // its last day: 2019-04-30
  EXPECT_EQ(days_since_1970({1, 5, 1}, "japanese"), 18'017);    // Reiwa
  EXPECT_EQ(days_since_1970({23, 1, 1}, "japanese"), 25'933);   // 2041-01-01
}

TEST(Calendars, ADateOfNoCalendarIsRefused) {
  const inv::CalendarDate dates[] = {{2023, 2, 29}, {2024, 2, 30}, {2026, 0, 1}, {2026, 13, 1}, {2026, 1, 0},
                                     {2026, 1, 32}, {0, 1, 1},     {61, 1, 1},   {201, 1, 1},   {1500, 1, 1},
                                     {1969, 13, 1}, {2400, 1, 1},  {2943, 1, 1}, {9999, 1, 1},  {2100, 2, 29},
                                     {1448, 99, 1}, {5787, 14, 1}, {5787, 99, 1}};
  for (const inv::CalendarDate& date : dates)
    EXPECT_FALSE(days_since_1970(date, "")) << date.year << "-" << date.month << "-" << date.day;
}

}  // namespace
