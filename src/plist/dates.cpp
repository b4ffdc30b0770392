#include "plist/dates.h"

#include <cstdint>

#include "plist/cursor.h"

namespace plist {
namespace {

constexpr int64_t kSecondsPerDay = 86400;

// Days from 0000-03-01 in the Gregorian calendar, carried backwards without end. Years here begin in March,
// so that the leap day is the last of its year; months are counted from 0.
int64_t days_before(int64_t march_year, int64_t month_from_march) {
  const auto floor_div = [](int64_t value, int64_t by) { return value / by - (value % by < 0 ? 1 : 0); };
  return march_year * 365 + floor_div(march_year, 4) - floor_div(march_year, 100) +
         floor_div(march_year, 400) + (month_from_march * 153 + 2) / 5;
}

// Of the first of a month; month counts from 1.
int64_t days_of_month_start(int64_t year, int64_t month) {
  const int64_t from_march = year * 12 + month - 3;
  const int64_t march_year = from_march / 12 - (from_march % 12 < 0 ? 1 : 0);
  return days_before(march_year, from_march - march_year * 12);
}

std::optional<int64_t> take_number(Cursor& cursor, int fewest_digits, int most_digits) {
  int64_t value = 0;
  int digits = 0;
  for (; digits < most_digits && !cursor.at_end() && is_digit(*cursor.at); ++digits) {
    value = value * 10 + (*cursor.at++ - '0');
  }
  if (digits < fewest_digits) return std::nullopt;
  return value;
}

}  // namespace

std::optional<double> parse_date(std::string_view text) {
  Cursor cursor(text);
  const bool negative = cursor.skip('-');
  const std::optional<int64_t> year = take_number(cursor, 1, 9);
  if (!year || !cursor.skip('-')) return std::nullopt;

  int64_t month_to_second[5];
  const char* separator = "-T::Z";
  for (int64_t& field : month_to_second) {
    const std::optional<int64_t> value = take_number(cursor, 2, 2);
    if (!value || !cursor.skip(*separator++)) return std::nullopt;
    field = *value;
  }
  if (!cursor.at_end()) return std::nullopt;

  const auto [month, day, hour, minute, second] = month_to_second;
  const int64_t month_start = days_of_month_start(negative ? -*year : *year, month == 0 ? 1 : month);
  const int64_t days = month_start + (day - 1) - days_of_month_start(2001, 1);
  return static_cast<double>(days * kSecondsPerDay + hour * 3600 + minute * 60 + second);
}

}  // namespace plist
