// Locales and the date formatters made for them.
#pragma once

#include <CoreFoundation/CFDateFormatter.h>
#include <CoreFoundation/CFLocale.h>

#include <string>

#include "platform/corefoundation/object.h"

struct CFLocaleObject : cf::Object {
  // Takes over the identifier's reference.
  explicit CFLocaleObject(CFStringRef its_identifier)
      : Object(cf::Kind::locale), identifier(its_identifier) {}
  ~CFLocaleObject() { CFRelease(identifier); }

  const CFStringRef identifier;
};

struct CFDateFormatterObject : cf::Object {
  // Takes over the formatter and the calendar, a UDateFormat and a UCalendar of ICU's.
  CFDateFormatterObject(void** its_formatter, void** its_calendar)
      : Object(cf::Kind::date_formatter), formatter(its_formatter), calendar(its_calendar) {}
  ~CFDateFormatterObject();

  void** const formatter;
  void** const calendar;
  std::string number_pattern;  // the pattern, when it needs no formatter (see number_pattern.h); else empty
};
