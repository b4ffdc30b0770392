// Dates of the calendars that a Mac's user can choose.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace inv {

// Counted as the calendar itself does, from 1; a Japanese year is that of its era.
struct CalendarDate {
  int year;
  int month;
  int day;
};

// The days from 1970-01-01 to a date in the calendar of this name ("buddhist", as the system calls it), or
// without a name in the one whose years of our time are such numbers. So is a date whose year cannot be one
// of the named calendar: the scanner falls back on the Gregorian calendar where a locale has digits of its
// own. None when there is no such date, or no calendar that has it.
std::optional<int64_t> days_since_1970(const CalendarDate& date, std::string_view calendar);

}  // namespace inv
