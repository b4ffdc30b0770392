// Dates in the calendars that a Mac's user can choose.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace inv {

// Numbered from 1 as in the calendar itself; a Japanese year is that of its era.
struct CalendarDate {
  int year;
  int month;
  int day;
};

// The days from 1970-01-01 to a date in the calendar of this name ("buddhist", as the system calls it).
// Without a name, or if the year does not fit the named calendar, it is the calendar whose present-day years
// have such numbers: the scanner falls back on the Gregorian calendar for locales with their own digits.
// std::nullopt if there is no such date, or no calendar has it.
std::optional<int64_t> days_since_1970(const CalendarDate& date, std::string_view calendar);

}  // namespace inv
