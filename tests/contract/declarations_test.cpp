// What the scanner calls is declared as on a Mac: this file compiles against Apple's headers and against the
// stand-in's, or against neither.
#include <CoreFoundation/CoreFoundation.h>
#include <SystemConfiguration/SystemConfiguration.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace {

template <typename Declared, typename Expected>
constexpr bool kIsSame = std::is_same_v<Declared, Expected>;

// Numbers.
static_assert(kIsSame<Boolean, unsigned char>);
static_assert(kIsSame<UInt8, unsigned char>);
static_assert(kIsSame<CFIndex, long>);
static_assert(kIsSame<CFTypeID, unsigned long>);
static_assert(kIsSame<CFOptionFlags, unsigned long>);
static_assert(kIsSame<CFStringEncoding, UInt32> && sizeof(UInt32) == 4 && std::is_unsigned_v<UInt32>);
static_assert(kIsSame<CFTimeInterval, double> && kIsSame<CFAbsoluteTime, double>);
static_assert(kIsSame<decltype(CFRange::location), CFIndex> && kIsSame<decltype(CFRange::length), CFIndex>);

// Objects: pointers to structures that are never seen, constant but for the formatter and the
// calendar.
template <typename Ref, bool constant>
constexpr bool kIsObject =
    std::is_pointer_v<Ref> ? std::is_const_v<std::remove_pointer_t<Ref>> == constant : false;
static_assert(kIsSame<CFTypeRef, const void*> && kIsSame<CFPropertyListRef, CFTypeRef>);
static_assert(kIsObject<CFAllocatorRef, true> && kIsObject<CFStringRef, true> && kIsObject<CFArrayRef, true>);
static_assert(kIsObject<CFDictionaryRef, true> && kIsObject<CFDataRef, true> && kIsObject<CFDateRef, true>);
static_assert(kIsObject<CFNumberRef, true> && kIsObject<CFBooleanRef, true> && kIsObject<CFLocaleRef, true>);
static_assert(kIsObject<SCDynamicStoreRef, true> && kIsObject<CFDateFormatterRef, false>);
static_assert(kIsObject<CFTimeZoneRef, true> && kIsObject<CFCalendarRef, false>);
static_assert(kIsSame<CFLocaleIdentifier, CFStringRef> && kIsSame<CFCalendarIdentifier, CFStringRef>);

// Enumerations.
template <typename Enumeration>
constexpr bool kCountsInIndices = kIsSame<std::underlying_type_t<Enumeration>, CFIndex>;
static_assert(kCountsInIndices<CFComparisonResult> && kCountsInIndices<CFNumberType> &&
              kCountsInIndices<CFDateFormatterStyle>);
static_assert(kIsSame<CFPropertyListMutabilityOptions, CFOptionFlags> &&
              kIsSame<CFStringCompareFlags, CFOptionFlags>);
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
static_assert(kIsSame<decltype(kCFAllocatorDefault), const CFAllocatorRef> &&
              kIsSame<decltype(kCFAllocatorMalloc), const CFAllocatorRef> &&
              kIsSame<decltype(kCFAllocatorNull), const CFAllocatorRef>);
static_assert(kIsSame<decltype(kCFBooleanTrue), const CFBooleanRef> &&
              kIsSame<decltype(kCFBooleanFalse), const CFBooleanRef>);
static_assert(kIsSame<decltype(kCFTypeArrayCallBacks), const CFArrayCallBacks> &&
              kIsSame<decltype(kCFTypeDictionaryKeyCallBacks), const CFDictionaryKeyCallBacks> &&
              kIsSame<decltype(kCFTypeDictionaryValueCallBacks), const CFDictionaryValueCallBacks>);
static_assert(kIsSame<decltype(kCFAbsoluteTimeIntervalSince1970), const CFTimeInterval>);

// Functions.
static_assert(kIsSame<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);
static_assert(kIsSame<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(kIsSame<decltype(CFRelease), void(CFTypeRef)>);
static_assert(kIsSame<decltype(CFGetRetainCount), CFIndex(CFTypeRef)>);
static_assert(kIsSame<decltype(CFEqual), Boolean(CFTypeRef, CFTypeRef)>);
static_assert(kIsSame<decltype(CFRangeMake), CFRange(CFIndex, CFIndex)>);

using TypeIDFunction = CFTypeID();
static_assert(kIsSame<decltype(CFArrayGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFBooleanGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFCalendarGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFDataGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFDateGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFDictionaryGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFNumberGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFStringGetTypeID), TypeIDFunction> &&
              kIsSame<decltype(CFTimeZoneGetTypeID), TypeIDFunction>);

static_assert(kIsSame<decltype(CFArrayCreate),
                      CFArrayRef(CFAllocatorRef, const void**, CFIndex, const CFArrayCallBacks*)>);
static_assert(kIsSame<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(kIsSame<decltype(CFArrayGetValueAtIndex), const void*(CFArrayRef, CFIndex)>);

static_assert(kIsSame<decltype(CFDataCreate), CFDataRef(CFAllocatorRef, const UInt8*, CFIndex)>);
static_assert(kIsSame<decltype(CFDataCreateWithBytesNoCopy),
                      CFDataRef(CFAllocatorRef, const UInt8*, CFIndex, CFAllocatorRef)>);
static_assert(kIsSame<decltype(CFDataGetLength), CFIndex(CFDataRef)>);
static_assert(kIsSame<decltype(CFDataGetBytePtr), const UInt8*(CFDataRef)>);

static_assert(kIsSame<decltype(CFAbsoluteTimeGetCurrent), CFAbsoluteTime()>);
static_assert(kIsSame<decltype(CFDateCreate), CFDateRef(CFAllocatorRef, CFAbsoluteTime)>);
static_assert(kIsSame<decltype(CFDateGetAbsoluteTime), CFAbsoluteTime(CFDateRef)>);
static_assert(
    kIsSame<decltype(CFDateFormatterCreate),
            CFDateFormatterRef(CFAllocatorRef, CFLocaleRef, CFDateFormatterStyle, CFDateFormatterStyle)>);
static_assert(kIsSame<decltype(CFDateFormatterSetFormat), void(CFDateFormatterRef, CFStringRef)>);
static_assert(kIsSame<decltype(CFDateFormatterCreateStringWithDate),
                      CFStringRef(CFAllocatorRef, CFDateFormatterRef, CFDateRef)>);
static_assert(kIsSame<decltype(CFCalendarCopyCurrent), CFCalendarRef()>);
static_assert(kIsSame<decltype(CFCalendarGetIdentifier), CFCalendarIdentifier(CFCalendarRef)>);
static_assert(kIsSame<decltype(CFTimeZoneCopySystem), CFTimeZoneRef()>);
static_assert(kIsSame<decltype(CFTimeZoneGetName), CFStringRef(CFTimeZoneRef)>);
static_assert(kIsSame<decltype(CFLocaleCopyCurrent), CFLocaleRef()>);
static_assert(kIsSame<decltype(CFLocaleCreate), CFLocaleRef(CFAllocatorRef, CFLocaleIdentifier)>);
static_assert(kIsSame<decltype(CFLocaleGetIdentifier), CFLocaleIdentifier(CFLocaleRef)>);

static_assert(kIsSame<decltype(CFDictionaryCreate),
                      CFDictionaryRef(CFAllocatorRef, const void**, const void**, CFIndex,
                                      const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*)>);
static_assert(kIsSame<decltype(CFDictionaryGetCount), CFIndex(CFDictionaryRef)>);
static_assert(kIsSame<decltype(CFDictionaryContainsKey), Boolean(CFDictionaryRef, const void*)>);
static_assert(kIsSame<decltype(CFDictionaryGetValue), const void*(CFDictionaryRef, const void*)>);
static_assert(
    kIsSame<decltype(CFDictionaryGetValueIfPresent), Boolean(CFDictionaryRef, const void*, const void**)>);
static_assert(
    kIsSame<decltype(CFDictionaryGetKeysAndValues), void(CFDictionaryRef, const void**, const void**)>);

static_assert(kIsSame<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);
static_assert(kIsSame<decltype(CFNumberCreate), CFNumberRef(CFAllocatorRef, CFNumberType, const void*)>);
static_assert(kIsSame<decltype(CFNumberGetType), CFNumberType(CFNumberRef)>);
static_assert(kIsSame<decltype(CFNumberIsFloatType), Boolean(CFNumberRef)>);
static_assert(kIsSame<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void*)>);

static_assert(
    kIsSame<decltype(CFStringCreateWithCString), CFStringRef(CFAllocatorRef, const char*, CFStringEncoding)>);
static_assert(kIsSame<decltype(CFStringCreateWithBytes),
                      CFStringRef(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding, Boolean)>);
static_assert(kIsSame<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(kIsSame<decltype(CFStringGetBytes), CFIndex(CFStringRef, CFRange, CFStringEncoding, UInt8,
                                                          Boolean, UInt8*, CFIndex, CFIndex*)>);
static_assert(kIsSame<decltype(CFStringGetCString), Boolean(CFStringRef, char*, CFIndex, CFStringEncoding)>);
static_assert(kIsSame<decltype(CFStringGetCStringPtr), const char*(CFStringRef, CFStringEncoding)>);
static_assert(
    kIsSame<decltype(CFStringCompare), CFComparisonResult(CFStringRef, CFStringRef, CFStringCompareFlags)>);

// Deprecated, and what the scanner calls.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
static_assert(kIsSame<decltype(CFPropertyListCreateFromXMLData),
                      CFPropertyListRef(CFAllocatorRef, CFDataRef, CFOptionFlags, CFStringRef*)>);
#pragma GCC diagnostic pop

static_assert(
    kIsSame<decltype(SCDynamicStoreCopyComputerName), CFStringRef(SCDynamicStoreRef, CFStringEncoding*)>);

// There is nothing to do at run time: the compiler has checked all of the above.
TEST(Declarations, AreThoseOfAMac) {
  const auto text = CFSTR("text");
  static_assert(kIsSame<decltype(text), const CFStringRef>);
  EXPECT_NE(text, nullptr);
}

}  // namespace
