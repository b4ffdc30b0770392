// The calendar and the time zone of the user.
#pragma once

#include <CoreFoundation/CFCalendar.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFTimeZone.h>

#include "platform/corefoundation/object.h"

namespace cf {

// An object that is only a name.
struct NamedObject : Object {
  // Takes over the name's reference.
  NamedObject(Kind its_kind, CFStringRef its_name) : Object(its_kind), name(its_name) {}
  ~NamedObject() { CFRelease(name); }

  const CFStringRef name;
};

}  // namespace cf

struct CFCalendarObject : cf::NamedObject {
  explicit CFCalendarObject(CFStringRef its_name) : NamedObject(cf::Kind::calendar, its_name) {}
};

struct CFTimeZoneObject : cf::NamedObject {
  explicit CFTimeZoneObject(CFStringRef its_name) : NamedObject(cf::Kind::time_zone, its_name) {}
};
