// When a scan was made, in the form that the scanner writes: local time in the calendar of the Mac's user,
// and the offset from UTC in minutes.
#pragma once

#include <string>
#include <string_view>

namespace inv {

// Whether a text has that form: "20120118153045.000000+120". It does not reveal the date's calendar.
bool is_timestamp(std::string_view text);

// The moment in UTC, in the format of RFC 3339: "2012-01-18T13:30:45Z". `calendar` is empty if the scan does
// not name it; see calendars.h. Empty for a text that is no such moment.
std::string utc_of(std::string_view timestamp, std::string_view calendar);

}  // namespace inv
