#include "inv/base/calendars.h"

#include <iterator>

namespace inv {
namespace {

using Day = int64_t;  // since 1970-01-01

Day floor_divide(Day number, Day divisor) { return number / divisor - (number % divisor < 0 ? 1 : 0); }

// The first day of a month; the month after the year's last one gives the end of that one. std::nullopt for
// months beyond that.
using MonthStart = std::optional<Day> (*)(int year, int month);

std::optional<Day> gregorian_month(int year, int month) {
  if (month > 13) return std::nullopt;
  // Years counted from March have their leap day at the end.
  const Day from_march = year - (month <= 2 ? 1 : 0);
  const Day months = month <= 2 ? month + 9 : month - 3;
  return 365 * from_march + floor_divide(from_march, 4) - floor_divide(from_march, 100) +
         floor_divide(from_march, 400) + (153 * months + 2) / 5 - 719'468;
}

std::optional<Day> buddhist_month(int year, int month) { return gregorian_month(year - 543, month); }

std::optional<Day> minguo_month(int year, int month) { return gregorian_month(year + 1911, month); }

// The scanner did not exist before the 24th year of Heisei, and Reiwa has not reached that year.
std::optional<Day> japanese_month(int year, int month) {
  constexpr int kBeforeHeisei = 1988;
  constexpr int kBeforeReiwa = 2018;
  return gregorian_month(year + (year < 24 ? kBeforeReiwa : kBeforeHeisei), month);
}

// Twelve months of 30 days, and a thirteenth with the rest.
std::optional<Day> alexandrian_month(int year, int month, Day epoch) {
  if (month > 14) return std::nullopt;
  if (month == 14) return alexandrian_month(year + 1, 1, epoch);
  return epoch + 365 * (year - 1) + year / 4 + 30 * (month - 1);
}

std::optional<Day> coptic_month(int year, int month) { return alexandrian_month(year, month, -615'558); }

std::optional<Day> ethiopic_month(int year, int month) { return alexandrian_month(year, month, -716'367); }

std::optional<Day> ethiopic_world_month(int year, int month) { return ethiopic_month(year - 5500, month); }

// Saka years begin on 22 March, in leap years on the 21st.
std::optional<Day> indian_month(int year, int month) {
  if (month > 13) return std::nullopt;
  if (month == 13) return indian_month(year + 1, 1);
  const int begins_in = year + 78;
  const bool leap = *gregorian_month(begins_in, 3) - *gregorian_month(begins_in, 2) == 29;
  const Day first = *gregorian_month(begins_in, 3) + (leap ? 20 : 21);
  if (month == 1) return first;
  const Day second = first + (leap ? 31 : 30);
  // Five months of 31 days, then those of 30.
  return second + (month <= 7 ? 31 * (month - 2) : 155 + 30 * (month - 7));
}

// Six months of 31 days, five of 30, and the last; eight leap years in 33.
std::optional<Day> persian_month(int year, int month) {
  if (month > 13) return std::nullopt;
  if (month == 13) return persian_month(year + 1, 1);
  constexpr Day kEpoch = -492'268;
  return kEpoch + 365 * (year - 1) + floor_divide(8 * year + 21, 33) +
         (month <= 7 ? 31 * (month - 1) : 30 * (month - 1) + 6);
}

// The first day of the Hebrew year: that of its new moon, unless a rule postpones it.
Day hebrew_year(int year) {
  constexpr Day kEpoch = -2'092'590;
  constexpr Day kPartsOfDay = 25'920;
  const auto elapsed = [](int of_year) {
    const Day months = floor_divide(235 * Day{of_year} - 234, 19);
    const Day parts = 12'084 + 13'753 * months;
    const Day days = 29 * months + floor_divide(parts, kPartsOfDay);
    return days + (3 * (days + 1) % 7 < 3 ? 1 : 0);
  };
  const Day before = elapsed(year - 1), its = elapsed(year), after = elapsed(year + 1);
  const Day delay = after - its == 356 ? 2 : its - before == 382 ? 1 : 0;
  return kEpoch + its + delay;
}

// Months are numbered from Tishri: a leap year has 13.
std::optional<Day> hebrew_month(int year, int month) {
  const Day start = hebrew_year(year);
  const Day length = hebrew_year(year + 1) - start;
  const bool leap = length > 360;
  const int months = leap ? 13 : 12;
  if (month > months + 1) return std::nullopt;
  const bool long_heshvan = length % 10 == 5;
  const bool short_kislev = length % 10 == 3;
  Day first = start;
  for (int before = 1; before < month; ++before) {
    // A leap year has an extra Adar before the usual one.
    const int usual = leap && before > 6 ? before - 1 : before;
    const bool whole = usual % 2 == 1 || (leap && before == 6);
    first += (whole && !(usual == 3 && short_kislev)) || (usual == 2 && long_heshvan) ? 30 : 29;
  }
  return first;
}

std::optional<Day> islamic_month(int year, int month, Day epoch) {
  if (month > 13) return std::nullopt;
  if (month == 13) return islamic_month(year + 1, 1, epoch);
  return epoch + 354 * (year - 1) + (11 * year + 3) / 30 + (59 * (month - 1) + 1) / 2;
}

std::optional<Day> islamic_civil_month(int year, int month) { return islamic_month(year, month, -492'148); }

std::optional<Day> islamic_tabular_month(int year, int month) { return islamic_month(year, month, -492'149); }

// The months with 30 days in the Umm al-Qura calendar, a year's first month in the highest of twelve bits. It
// follows the moon over Mecca, and is published rather than calculated.
constexpr int kFirstUmalquraYear = 1433;
constexpr Day kFirstUmalquraDay = 15'304;
constexpr unsigned kLongMonths[] = {0xB6A, 0x56C, 0xAAD, 0x555, 0xB29, 0xB92, 0xBA9, 0x5D4, 0xADA, 0x55A,
                                    0xAAB, 0x595, 0x749, 0x764, 0xBAA, 0x5B5, 0x2B6, 0xA56, 0xE4D, 0xB25,
                                    0xB52, 0xB6A, 0x5AD, 0x2AE, 0x92F, 0x497, 0x64B, 0x6A5, 0x6AC, 0xAD6,
                                    0x55D, 0x49D, 0xA4D, 0xD16, 0xD95, 0x5AA, 0x5B5, 0x2DA, 0x95B, 0x4AD,
                                    0x595, 0x6CA, 0x6E4, 0xAEA, 0x4F5, 0x2B6, 0x956, 0xAAA};
constexpr int kLastUmalquraYear = kFirstUmalquraYear + static_cast<int>(std::size(kLongMonths)) - 1;

std::optional<Day> umalqura_month(int year, int month) {
  if (month > 13) return std::nullopt;
  Day first = kFirstUmalquraDay;
  const int months = (year - kFirstUmalquraYear) * 12 + month - 1;
  for (int i = 0; i < months; ++i) {
    const bool is_long = kLongMonths[i / 12] >> (11 - i % 12) & 1;
    first += is_long ? 30 : 29;
  }
  return first;
}

// The years in which scans are made. If a year is in several rows, only the calendar's name decides between
// them; without one the first row counts.
struct Calendar {
  std::string_view name;
  int first_year;
  int last_year;
  MonthStart month_start;
};

constexpr Calendar kCalendars[] = {
    {"gregorian", 1970, 2399, gregorian_month},
    {"iso8601", 1970, 2399, gregorian_month},
    {"buddhist", 2513, 2942, buddhist_month},
    {"japanese", 1, 60, japanese_month},
    {"roc", 100, 200, minguo_month},
    {"persian", 1380, 1425, persian_month},
    {"islamic-umalqura", kFirstUmalquraYear, kLastUmalquraYear, umalqura_month},
    {"islamic-civil", kFirstUmalquraYear, kLastUmalquraYear, islamic_civil_month},
    {"islamic-tbla", kFirstUmalquraYear, kLastUmalquraYear, islamic_tabular_month},
    {"coptic", 1720, 1780, coptic_month},
    {"indian", 1922, 1969, indian_month},
    {"hebrew", 5760, 5830, hebrew_month},
    {"ethiopic", 2000, 2060, ethiopic_month},
    {"ethiopic-amete-alem", 7500, 7560, ethiopic_world_month},
};

const Calendar* find_calendar(int year, std::string_view name) {
  const Calendar* found = nullptr;
  for (const Calendar& calendar : kCalendars) {
    if (year < calendar.first_year || year > calendar.last_year) continue;
    if (calendar.name == name) return &calendar;
    if (!found) found = &calendar;
  }
  return found;
}

}  // namespace

std::optional<int64_t> days_since_1970(const CalendarDate& date, std::string_view name) {
  const Calendar* calendar = find_calendar(date.year, name);
  if (!calendar || date.month < 1 || date.day < 1) return std::nullopt;
  const std::optional<Day> first = calendar->month_start(date.year, date.month);
  const std::optional<Day> end = calendar->month_start(date.year, date.month + 1);
  if (!first || !end || date.day > *end - *first) return std::nullopt;
  return *first + date.day - 1;
}

}  // namespace inv
