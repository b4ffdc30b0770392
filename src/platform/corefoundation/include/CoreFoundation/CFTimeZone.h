#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct CFTimeZoneObject* CFTimeZoneRef;

extern "C" {

CFTypeID CFTimeZoneGetTypeID(void);
// The zone that TZ names, else the system's: "Europe/Berlin".
CFTimeZoneRef CFTimeZoneCopySystem(void);
CFStringRef CFTimeZoneGetName(CFTimeZoneRef zone);
}
