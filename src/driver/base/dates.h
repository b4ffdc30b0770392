// Dates as the inventory writes them, formatted by the system in the current locale and time zone.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "driver/base/text.h"
#include "platform/cf_ref.h"

enum class DateForm {
  kShort = 0,    // 2012-01-18
  kCim = 1,      // 20120118153045.000000+120: local time, a fixed fraction, the offset from UTC in minutes
  kProcess = 2,  // 2012-01-18 15:30:45 GMT+2
};

// Formats any number of dates in one form; making a formatter is dear, using it is cheap.
class DateFormatter {
 public:
  explicit DateFormatter(DateForm form);

  // A new text; the empty text when the system cannot format the date. Where the locale writes other digits
  // than ASCII ones, the CIM form is made in the POSIX locale, so that a timestamp can always be read.
  Text format(CFDateRef date) const;

 private:
  DateForm form_;
  CFRef<CFDateFormatterRef> formatter_;
};

Text format_date(DateForm form, CFDateRef date);
// The current time.
Text format_now(DateForm form);
