#include "platform/corefoundation/region.h"

#include <CoreFoundation/CFLocale.h>
#include <unicode/ucal.h>

#include <cstdlib>

#include "platform/cf_ref.h"
#include "platform/corefoundation/string.h"
#include "platform/corefoundation/time_zone.h"
#include "platform/corefoundation/utf16.h"

namespace {

std::string calendar_type() {
  const CFRef<CFLocaleRef> locale(CFLocaleCopyCurrent());
  const std::string identifier(cf::text_of(CFLocaleGetIdentifier(locale.get())));
  UErrorCode status = U_ZERO_ERROR;
  UCalendar* const calendar = ucal_open(u"UTC", -1, identifier.c_str(), UCAL_DEFAULT, &status);
  const char* type = U_SUCCESS(status) ? ucal_getType(calendar, &status) : "";
  const std::string name(U_SUCCESS(status) ? type : "gregorian");
  ucal_close(calendar);
  return name;
}

}  // namespace

CFTypeID CFCalendarGetTypeID() { return static_cast<CFTypeID>(cf::Kind::calendar); }

CFCalendarRef CFCalendarCopyCurrent() {
  return cf::create<CFCalendarObject>(cf::create_repaired_string(calendar_type()));
}

CFCalendarIdentifier CFCalendarGetIdentifier(CFCalendarRef calendar) { return calendar->name; }

CFTypeID CFTimeZoneGetTypeID() { return static_cast<CFTypeID>(cf::Kind::time_zone); }

CFTimeZoneRef CFTimeZoneCopySystem() {
  return cf::create<CFTimeZoneObject>(
      cf::create_repaired_string(cf::to_utf8(cf::time_zone(std::getenv("TZ")))));
}

CFStringRef CFTimeZoneGetName(CFTimeZoneRef zone) { return zone->name; }
