#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFCharacterSet.h>
#include <stdarg.h>

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

// None when the bytes are not valid in the encoding.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean is_external);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters, CFIndex length);
CFStringRef CFStringCreateCopy(CFAllocatorRef allocator, CFStringRef string);
// Conversions: %@ (strings and numbers), those of printf for integers, doubles and %s,
// %C (a UTF-16 unit), %%.
CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options, CFStringRef format,
                                     ...);
CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef allocator, CFDictionaryRef options,
                                                 CFStringRef format, va_list arguments);

CFIndex CFStringGetLength(CFStringRef string);
UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);
// Writes the converted bytes of the range, or only measures when the buffer is null; the number of UTF-16
// units that were converted. A pair of surrogates is never split. A character that the encoding lacks becomes
// the loss byte, or ends the conversion when that is 0.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 loss_byte,
                         Boolean is_external, UInt8* buffer, CFIndex buffer_length, CFIndex* used);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex buffer_size, CFStringEncoding encoding);
// The string's own bytes, valid as long as it is; always there for UTF-8, where Apple's may be
// none: have another way.
const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFStringCompareFlags flags);
Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix);
Boolean CFStringHasSuffix(CFStringRef string, CFStringRef suffix);
CFRange CFStringFind(CFStringRef string, CFStringRef wanted, CFStringCompareFlags flags);
Boolean CFStringFindCharacterFromSet(CFStringRef string, CFCharacterSetRef set, CFRange range,
                                     CFStringCompareFlags flags, CFRange* result);

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef allocator, CFIndex maximum_length);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maximum_length,
                                             CFStringRef string);
void CFStringAppend(CFMutableStringRef string, CFStringRef appended);
void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding);
void CFStringAppendFormat(CFMutableStringRef string, CFDictionaryRef options, CFStringRef format, ...);
void CFStringReplace(CFMutableStringRef string, CFRange range, CFStringRef replacement);
// The number of replacements; text that a replacement brought in is not searched again.
CFIndex CFStringFindAndReplace(CFMutableStringRef string, CFStringRef wanted, CFStringRef replacement,
                               CFRange range, CFStringCompareFlags flags);

// What CFSTR calls once for each place where it stands; the string lives as long as the program.
CFStringRef CFStringMakeConstant(const char* text);
}

#define CFSTR(text)                                                       \
  ([]() -> CFStringRef {                                                  \
    static const CFStringRef constant = CFStringMakeConstant("" text ""); \
    return constant;                                                      \
  }())
