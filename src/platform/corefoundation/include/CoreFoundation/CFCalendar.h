#pragma once

#include <CoreFoundation/CFBase.h>

typedef struct CFCalendarObject* CFCalendarRef;
typedef CFStringRef CFCalendarIdentifier;

extern "C" {

CFTypeID CFCalendarGetTypeID(void);
// The calendar of the current locale: "gregorian", "buddhist", "persian" and so on.
CFCalendarRef CFCalendarCopyCurrent(void);
CFCalendarIdentifier CFCalendarGetIdentifier(CFCalendarRef calendar);
}
