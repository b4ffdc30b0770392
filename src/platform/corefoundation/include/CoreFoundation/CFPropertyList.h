#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>

typedef enum CFPropertyListMutabilityOptions : CFOptionFlags {
  kCFPropertyListImmutable = 0
} CFPropertyListMutabilityOptions;

extern "C" {

// Reads XML property lists in UTF-8. None when the list is not well-formed: *error then is a message for the
// caller to release.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef data,
                                                  CFOptionFlags options, CFStringRef* error);
}
