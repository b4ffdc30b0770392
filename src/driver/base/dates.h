// Dates as the inventory writes them, formatted by the system in the current locale and time zone.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "driver/base/text.h"
#include "platform/cf_ref.h"

enum class DateForm {
  short_date = 0,  // 2012-01-18
  cim = 1,         // 20120118153045.000000+120: local time, a fixed fraction, the offset from UTC in minutes
  process = 2,     // 2012-01-18 15:30:45 GMT+2
};

// Formats any number of dates in one form; making a formatter is expensive, using it is cheap.
class DateFormatter {
 public:
  // In the current locale, as the system formats dates for this user.
  explicit DateFormatter(DateForm form);
  // With a formatter that has the form's pattern, which the user's settings may have changed.
  DateFormatter(DateForm form, CFRef<CFDateFormatterRef> formatter);

  // A new text; the empty text when the system cannot format the date. A user who prefers twelve hours gets
  // them in any pattern: the text is then made in the POSIX locale, to which no settings apply. So is a CIM
  // form with digits other than ASCII ones, since a timestamp must be readable everywhere.
  Text format(CFDateRef date) const;

 private:
  DateForm form_;
  CFRef<CFDateFormatterRef> formatter_;
};

// Whether a text looks like a date in the CIM form. Nothing else that a Mac reports does.
bool is_cim_date(const char* text);

Text format_date(DateForm form, CFDateRef date);
// The current time.
Text format_now(DateForm form);
