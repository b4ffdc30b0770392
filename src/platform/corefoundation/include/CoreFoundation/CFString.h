#pragma once

#include <CoreFoundation/CFBase.h>

// Strings are kept as valid UTF-8. Lengths, positions and ranges count UTF-16 units, as Apple's do.
typedef UInt32 CFStringEncoding;
enum : CFStringEncoding {
  kCFStringEncodingASCII = 0x0600,
  kCFStringEncodingUTF8 = 0x08000100,
};

// Strings are compared unit by unit: no flag but 0 is supported.
typedef CFOptionFlags CFStringCompareFlags;

extern "C" {

CFTypeID CFStringGetTypeID(void);

// Null if the bytes are not valid in the encoding.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean is_external);

CFIndex CFStringGetLength(CFStringRef string);
// Writes the converted bytes of the range, or only measures when the buffer is null; the number of UTF-16
// units that were converted. A pair of surrogates is never split. A character that the encoding lacks becomes
// the loss byte, or ends the conversion when that is 0.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 loss_byte,
                         Boolean is_external, UInt8* buffer, CFIndex buffer_length, CFIndex* used);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex buffer_size, CFStringEncoding encoding);
// The string's own bytes, valid as long as the string; never null for UTF-8, where Apple's may return
// null: callers need another way too.
const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding);
CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFStringCompareFlags flags);
// What CFSTR calls once for each place where it is used; the string lives as long as the program.
CFStringRef CFStringMakeConstant(const char* text);
}

#define CFSTR(text)                                                       \
  ([]() -> CFStringRef {                                                  \
    static const CFStringRef constant = CFStringMakeConstant("" text ""); \
    return constant;                                                      \
  }())
