// Dates as the inventory writes them, formatted by the system in the current locale and time zone.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "driver/text.h"

enum class DateForm {
  kShort = 0,    // 2012-01-18
  kCim = 1,      // 20120118153045.000000+120: local time, a fixed fraction, the offset from UTC in minutes
  kProcess = 2,  // 2012-01-18 15:30:45 GMT+2
};

// A new text; the empty text when the system cannot format the date. Where the locale writes other digits
// than ASCII ones, the CIM form is made in the POSIX locale, so that a timestamp can always be read.
Text format_date(DateForm form, CFDateRef date);
Text format_now(DateForm form);
