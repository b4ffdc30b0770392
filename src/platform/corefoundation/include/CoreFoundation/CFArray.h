#pragma once

#include <CoreFoundation/CFBase.h>

// Elements are always CoreFoundation objects that the array retains.
typedef struct {
  CFIndex version;
} CFArrayCallBacks;

extern "C" {

extern const CFArrayCallBacks kCFTypeArrayCallBacks;

CFTypeID CFArrayGetTypeID(void);
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callbacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
}
