#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct CFDataObject* CFDataRef;

extern "C" {

CFTypeID CFDataGetTypeID(void);
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
// The bytes are released with free, or, with kCFAllocatorNull, stay the caller's and outlive the object.
CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                      CFAllocatorRef bytes_deallocator);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);
}
