// Dates of digits only, written without ICU's formatter: that one is made for any language, and takes ten
// times as long.
#pragma once

#include <unicode/ucal.h>
#include <unicode/udat.h>

#include <optional>
#include <string>
#include <string_view>

namespace cf {

// True when the formatter writes this pattern in digits as NumberPattern does: with the fields yyyy, MM, dd,
// HH, mm, ss and ZZ and no letters else, in ASCII digits and the Gregorian calendar.
bool is_number_pattern(const UDateFormat* formatter, std::string_view pattern);

// The text that a formatter with such a pattern and this calendar would give; none for a time that the
// calendar does not reach.
std::optional<std::string> format_numbers(UCalendar* calendar, std::string_view pattern, UDate milliseconds);

}  // namespace cf
