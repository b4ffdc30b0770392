// What the scanner calls is declared as on a Mac: this file compiles against Apple's headers and against the
// stand-in's, or against neither.
#include <CoreFoundation/CoreFoundation.h>
#include <SystemConfiguration/SystemConfiguration.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace {

template <class Declared, class Expected>
constexpr bool is_same = std::is_same_v<Declared, Expected>;

// Numbers.
static_assert(is_same<Boolean, unsigned char>);
static_assert(is_same<UInt8, unsigned char>);
static_assert(is_same<CFIndex, long>);
static_assert(is_same<CFTypeID, unsigned long>);
static_assert(is_same<CFOptionFlags, unsigned long>);
static_assert(is_same<CFStringEncoding, UInt32> && sizeof(UInt32) == 4 && std::is_unsigned_v<UInt32>);
static_assert(is_same<CFTimeInterval, double> && is_same<CFAbsoluteTime, double>);
static_assert(is_same<decltype(CFRange::location), CFIndex> && is_same<decltype(CFRange::length), CFIndex>);

// Objects: pointers to structures that are never seen, constant but for the formatter.
template <class Ref, bool constant>
constexpr bool is_object =
    std::is_pointer_v<Ref> ? std::is_const_v<std::remove_pointer_t<Ref>> == constant : false;
static_assert(is_same<CFTypeRef, const void*> && is_same<CFPropertyListRef, CFTypeRef>);
static_assert(is_object<CFAllocatorRef, true> && is_object<CFStringRef, true> && is_object<CFArrayRef, true>);
static_assert(is_object<CFDictionaryRef, true> && is_object<CFDataRef, true> && is_object<CFDateRef, true>);
static_assert(is_object<CFNumberRef, true> && is_object<CFBooleanRef, true> && is_object<CFLocaleRef, true>);
static_assert(is_object<SCDynamicStoreRef, true> && is_object<CFDateFormatterRef, false>);
static_assert(is_same<CFLocaleIdentifier, CFStringRef>);

// Enumerations.
template <class Enumeration>
constexpr bool counts_in_indices = is_same<std::underlying_type_t<Enumeration>, CFIndex>;
static_assert(counts_in_indices<CFComparisonResult> && counts_in_indices<CFNumberType> &&
              counts_in_indices<CFDateFormatterStyle>);
static_assert(is_same<CFPropertyListMutabilityOptions, CFOptionFlags> &&
              is_same<CFStringCompareFlags, CFOptionFlags>);
static_assert(kCFCompareLessThan == -1 && kCFCompareEqualTo == 0 && kCFCompareGreaterThan == 1);
static_assert(kCFNumberSInt8Type == 1 && kCFNumberSInt16Type == 2 && kCFNumberSInt32Type == 3 &&
              kCFNumberSInt64Type == 4 && kCFNumberFloat32Type == 5 && kCFNumberFloat64Type == 6 &&
              kCFNumberCharType == 7 && kCFNumberShortType == 8 && kCFNumberIntType == 9 &&
              kCFNumberLongType == 10 && kCFNumberLongLongType == 11 && kCFNumberFloatType == 12 &&
              kCFNumberDoubleType == 13 && kCFNumberCFIndexType == 14 && kCFNumberNSIntegerType == 15 &&
              kCFNumberCGFloatType == 16 && kCFNumberMaxType == 16);
static_assert(kCFDateFormatterNoStyle == 0 && kCFPropertyListImmutable == 0 && kCFNotFound == -1);
static_assert(kCFStringEncodingASCII == 0x0600 && kCFStringEncodingUTF8 == 0x08000100);

// Constants.
static_assert(is_same<decltype(kCFAllocatorDefault), const CFAllocatorRef> &&
              is_same<decltype(kCFAllocatorMalloc), const CFAllocatorRef> &&
              is_same<decltype(kCFAllocatorNull), const CFAllocatorRef>);
static_assert(is_same<decltype(kCFBooleanTrue), const CFBooleanRef> &&
              is_same<decltype(kCFBooleanFalse), const CFBooleanRef>);
static_assert(is_same<decltype(kCFTypeArrayCallBacks), const CFArrayCallBacks> &&
              is_same<decltype(kCFTypeDictionaryKeyCallBacks), const CFDictionaryKeyCallBacks> &&
              is_same<decltype(kCFTypeDictionaryValueCallBacks), const CFDictionaryValueCallBacks>);
static_assert(is_same<decltype(kCFAbsoluteTimeIntervalSince1970), const CFTimeInterval>);

// Functions.
static_assert(is_same<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);
static_assert(is_same<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(is_same<decltype(CFRelease), void(CFTypeRef)>);
static_assert(is_same<decltype(CFGetRetainCount), CFIndex(CFTypeRef)>);
static_assert(is_same<decltype(CFEqual), Boolean(CFTypeRef, CFTypeRef)>);
static_assert(is_same<decltype(CFRangeMake), CFRange(CFIndex, CFIndex)>);

using TypeIDFunction = CFTypeID();
static_assert(is_same<decltype(CFArrayGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFBooleanGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFDataGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFDateGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFDateFormatterGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFDictionaryGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFLocaleGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFNumberGetTypeID), TypeIDFunction> &&
              is_same<decltype(CFStringGetTypeID), TypeIDFunction>);

static_assert(is_same<decltype(CFArrayCreate),
                      CFArrayRef(CFAllocatorRef, const void**, CFIndex, const CFArrayCallBacks*)>);
static_assert(is_same<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(is_same<decltype(CFArrayGetValueAtIndex), const void*(CFArrayRef, CFIndex)>);

static_assert(is_same<decltype(CFDataCreate), CFDataRef(CFAllocatorRef, const UInt8*, CFIndex)>);
static_assert(is_same<decltype(CFDataCreateWithBytesNoCopy),
                      CFDataRef(CFAllocatorRef, const UInt8*, CFIndex, CFAllocatorRef)>);
static_assert(is_same<decltype(CFDataGetLength), CFIndex(CFDataRef)>);
static_assert(is_same<decltype(CFDataGetBytePtr), const UInt8*(CFDataRef)>);

static_assert(is_same<decltype(CFAbsoluteTimeGetCurrent), CFAbsoluteTime()>);
static_assert(is_same<decltype(CFDateCreate), CFDateRef(CFAllocatorRef, CFAbsoluteTime)>);
static_assert(is_same<decltype(CFDateGetAbsoluteTime), CFAbsoluteTime(CFDateRef)>);
static_assert(
    is_same<decltype(CFDateFormatterCreate),
            CFDateFormatterRef(CFAllocatorRef, CFLocaleRef, CFDateFormatterStyle, CFDateFormatterStyle)>);
static_assert(is_same<decltype(CFDateFormatterSetFormat), void(CFDateFormatterRef, CFStringRef)>);
static_assert(is_same<decltype(CFDateFormatterCreateStringWithDate),
                      CFStringRef(CFAllocatorRef, CFDateFormatterRef, CFDateRef)>);
static_assert(is_same<decltype(CFLocaleCopyCurrent), CFLocaleRef()>);
static_assert(is_same<decltype(CFLocaleCreate), CFLocaleRef(CFAllocatorRef, CFLocaleIdentifier)>);
static_assert(is_same<decltype(CFLocaleGetIdentifier), CFLocaleIdentifier(CFLocaleRef)>);

static_assert(is_same<decltype(CFDictionaryCreate),
                      CFDictionaryRef(CFAllocatorRef, const void**, const void**, CFIndex,
                                      const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*)>);
static_assert(is_same<decltype(CFDictionaryGetCount), CFIndex(CFDictionaryRef)>);
static_assert(is_same<decltype(CFDictionaryContainsKey), Boolean(CFDictionaryRef, const void*)>);
static_assert(is_same<decltype(CFDictionaryGetValue), const void*(CFDictionaryRef, const void*)>);
static_assert(
    is_same<decltype(CFDictionaryGetValueIfPresent), Boolean(CFDictionaryRef, const void*, const void**)>);
static_assert(
    is_same<decltype(CFDictionaryGetKeysAndValues), void(CFDictionaryRef, const void**, const void**)>);

static_assert(is_same<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);
static_assert(is_same<decltype(CFNumberCreate), CFNumberRef(CFAllocatorRef, CFNumberType, const void*)>);
static_assert(is_same<decltype(CFNumberGetType), CFNumberType(CFNumberRef)>);
static_assert(is_same<decltype(CFNumberGetByteSize), CFIndex(CFNumberRef)>);
static_assert(is_same<decltype(CFNumberIsFloatType), Boolean(CFNumberRef)>);
static_assert(is_same<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void*)>);

static_assert(
    is_same<decltype(CFStringCreateWithCString), CFStringRef(CFAllocatorRef, const char*, CFStringEncoding)>);
static_assert(is_same<decltype(CFStringCreateWithBytes),
                      CFStringRef(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding, Boolean)>);
static_assert(is_same<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(is_same<decltype(CFStringGetBytes), CFIndex(CFStringRef, CFRange, CFStringEncoding, UInt8,
                                                          Boolean, UInt8*, CFIndex, CFIndex*)>);
static_assert(is_same<decltype(CFStringGetCString), Boolean(CFStringRef, char*, CFIndex, CFStringEncoding)>);
static_assert(is_same<decltype(CFStringGetCStringPtr), const char*(CFStringRef, CFStringEncoding)>);
static_assert(
    is_same<decltype(CFStringCompare), CFComparisonResult(CFStringRef, CFStringRef, CFStringCompareFlags)>);

// Deprecated, and what the scanner calls.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
static_assert(is_same<decltype(CFPropertyListCreateFromXMLData),
                      CFPropertyListRef(CFAllocatorRef, CFDataRef, CFOptionFlags, CFStringRef*)>);
#pragma GCC diagnostic pop

static_assert(
    is_same<decltype(SCDynamicStoreCopyComputerName), CFStringRef(SCDynamicStoreRef, CFStringEncoding*)>);

}  // namespace

// Nothing is left to be done when it runs: the compiler has checked all of the above.
TEST(Declarations, AreThoseOfAMac) {
  const auto text = CFSTR("text");
  static_assert(is_same<decltype(text), const CFStringRef>);
  EXPECT_NE(text, nullptr);
}
