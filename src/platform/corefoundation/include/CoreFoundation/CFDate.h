#pragma once

#include <CoreFoundation/CFBase.h>

typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;  // seconds since 2001-01-01 00:00:00 UTC
typedef const struct CFDateObject* CFDateRef;

extern "C" {

extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;

CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);
CFTypeID CFDateGetTypeID(void);
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime time);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
}
