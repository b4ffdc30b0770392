#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct CFLocaleObject* CFLocaleRef;
typedef CFStringRef CFLocaleIdentifier;

extern "C" {

// The user's locale: what LC_ALL, LC_TIME or LANG names, the first that is set; "C", "POSIX" and nothing are
// en_US_POSIX.
CFLocaleRef CFLocaleCopyCurrent(void);
CFLocaleRef CFLocaleCreate(CFAllocatorRef allocator, CFLocaleIdentifier identifier);
CFLocaleIdentifier CFLocaleGetIdentifier(CFLocaleRef locale);
}
