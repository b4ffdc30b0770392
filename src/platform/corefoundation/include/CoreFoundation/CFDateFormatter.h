#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFLocale.h>

typedef struct CFDateFormatterObject* CFDateFormatterRef;

typedef enum CFDateFormatterStyle : CFIndex { kCFDateFormatterNoStyle = 0 } CFDateFormatterStyle;

extern "C" {

// Formats in the zone that TZ names, else (also where nobody knows that zone) in the system's. A null locale
// is the current one.
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale,
                                         CFDateFormatterStyle date_style, CFDateFormatterStyle time_style);
void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef pattern);
// A property of these two, the locale's words for the halves of the day; null for any other.
CFTypeRef CFDateFormatterCopyProperty(CFDateFormatterRef formatter, CFStringRef key);
extern const CFStringRef kCFDateFormatterAMSymbol;
extern const CFStringRef kCFDateFormatterPMSymbol;
CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef allocator, CFDateFormatterRef formatter,
                                                CFDateRef date);
}
