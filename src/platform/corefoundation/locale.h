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
  // Takes over the formatter, a UDateFormat of ICU's.
  explicit CFDateFormatterObject(void** its_formatter)
      : Object(cf::Kind::date_formatter), formatter(its_formatter) {}
  ~CFDateFormatterObject();

  void** const formatter;
};
