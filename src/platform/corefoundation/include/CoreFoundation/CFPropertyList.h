#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>

typedef CFOptionFlags CFPropertyListMutabilityOptions;
enum : CFPropertyListMutabilityOptions { kCFPropertyListImmutable = 0 };

extern "C" {

// Reads XML property lists in UTF-8. Null if the list is not well-formed: *error then is a message for the
// caller to release. Deprecated as on a Mac, so that a call that is not meant is noticed here as well.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef data,
                                                  CFOptionFlags options, CFStringRef* error)
    __attribute__((deprecated("Use CFPropertyListCreateWithData instead.")));
}
