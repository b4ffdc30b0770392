#include <gtest/gtest.h>

#include <cstring>

#include "contract/objects.h"

namespace {

// One byte, two bytes, three bytes and a pair of surrogates.
const char* const kMixed = "a\xC3\xA4\xE2\x80\x99\xF0\x9F\x98\x80z";

CFRange whole(CFStringRef text) { return CFRangeMake(0, CFStringGetLength(text)); }

struct Converted {
  CFIndex units, used;
  std::string bytes;
};
Converted convert(CFStringRef text, CFRange range, CFIndex capacity,
                  CFStringEncoding encoding = kCFStringEncodingUTF8, UInt8 loss_byte = 0) {
  std::string bytes(static_cast<size_t>(capacity), '\0');
  CFIndex used = 0;
  const CFIndex units = CFStringGetBytes(text, range, encoding, loss_byte, false,
                                         reinterpret_cast<UInt8*>(bytes.data()), capacity, &used);
  bytes.resize(static_cast<size_t>(used));
  return {units, used, bytes};
}

TEST(Strings, CountUtf16Units) {
  EXPECT_EQ(CFStringGetLength(string_of("abc").get()), 3);
  EXPECT_EQ(CFStringGetLength(string_of(kMixed).get()), 6);
  EXPECT_EQ(CFStringGetLength(CFSTR("")), 0);
}

TEST(Strings, AreNotMadeOfInvalidBytes) {
  EXPECT_EQ(CFStringCreateWithCString(nullptr, "a\xE4", kCFStringEncodingUTF8), nullptr);
  EXPECT_EQ(CFStringCreateWithCString(nullptr, "\xC3\xA4", kCFStringEncodingASCII), nullptr);
}

TEST(Strings, MayHoldNuls) {
  const CFRef<CFStringRef> text(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>("a\0b"), 3,
                                                        kCFStringEncodingUTF8, false));
  EXPECT_EQ(bytes_of_string(text.get()), std::string("a\0b", 3));
}

TEST(Strings, AreMeasuredWithoutABuffer) {
  const CFRef<CFStringRef> text = string_of(kMixed);
  CFIndex used = 0;
  EXPECT_EQ(
      CFStringGetBytes(text.get(), whole(text.get()), kCFStringEncodingUTF8, 0, false, nullptr, 0, &used), 6);
  EXPECT_EQ(used, static_cast<CFIndex>(std::strlen(kMixed)));
}

TEST(Strings, FillABufferWithWholeCharactersOnly) {
  const CFRef<CFStringRef> text = string_of(kMixed);
  const std::pair<CFIndex, CFIndex> written_units[] = {{0, 0}, {1, 1}, {2, 1},  {3, 2},  {5, 2},
                                                       {6, 3}, {9, 3}, {10, 5}, {11, 6}, {100, 6}};
  for (const auto& [capacity, units] : written_units) {
    const Converted converted = convert(text.get(), whole(text.get()), capacity);
    EXPECT_EQ(converted.units, units) << capacity;
    EXPECT_EQ(converted.bytes, std::string(kMixed).substr(0, converted.bytes.size())) << capacity;
  }
}

TEST(Strings, ConvertARangeOfThemselves) {
  const CFRef<CFStringRef> text = string_of(kMixed);
  EXPECT_EQ(convert(text.get(), CFRangeMake(1, 2), 20).bytes, "\xC3\xA4\xE2\x80\x99");
  EXPECT_EQ(convert(text.get(), CFRangeMake(3, 2), 20).bytes, "\xF0\x9F\x98\x80");
  EXPECT_EQ(convert(text.get(), CFRangeMake(6, 0), 20).bytes, "");
}

TEST(Strings, ReplaceOrStopAtWhatAnEncodingLacks) {
  const CFRef<CFStringRef> text = string_of(kMixed);
  const Converted replaced = convert(text.get(), whole(text.get()), 20, kCFStringEncodingASCII, '?');
  EXPECT_EQ(replaced.bytes.substr(0, 3), "a??");
  EXPECT_EQ(replaced.units, 6);
  const Converted stopped = convert(text.get(), whole(text.get()), 20, kCFStringEncodingASCII);
  EXPECT_EQ(stopped.bytes, "a");
  EXPECT_EQ(stopped.units, 1);
}

TEST(Strings, BecomeCStringsWhereTheyFit) {
  const CFRef<CFStringRef> text = string_of(kMixed);
  char buffer[12];
  EXPECT_TRUE(CFStringGetCString(text.get(), buffer, 12, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer, kMixed);
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 11, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 0, kCFStringEncodingUTF8));
  const char* const direct = CFStringGetCStringPtr(text.get(), kCFStringEncodingUTF8);
  EXPECT_TRUE(!direct || std::strcmp(direct, kMixed) == 0);
}

TEST(Strings, CompareByUtf16Units) {
  EXPECT_EQ(CFStringCompare(CFSTR("a"), CFSTR("a"), 0), kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(CFSTR("a"), CFSTR("b"), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(CFSTR("ab"), CFSTR("a"), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(CFSTR("A"), CFSTR("a"), 0), kCFCompareLessThan);
  // U+1F600 is D83D DE00 in UTF-16, and so sorts before U+FFFD.
  EXPECT_EQ(CFStringCompare(CFSTR("\xF0\x9F\x98\x80"), CFSTR("\xEF\xBF\xBD"), 0), kCFCompareLessThan);
}

TEST(ReferenceCounts, FollowRetainAndRelease) {
  const CFRef<CFStringRef> text = string_of("a text that no system holds as a constant");
  EXPECT_EQ(CFGetRetainCount(text.get()), 1);
  CFRetain(text.get());
  EXPECT_EQ(CFGetRetainCount(text.get()), 2);
  CFRelease(text.get());
  EXPECT_EQ(CFGetRetainCount(text.get()), 1);
}

TEST(ReferenceCounts, DoNotMatterToConstants) {
  for (int i = 0; i < 3; ++i) CFRelease(CFRetain(CFSTR("constant")));
  CFRelease(CFRetain(kCFBooleanTrue));
  EXPECT_TRUE(CFBooleanGetValue(kCFBooleanTrue));
  EXPECT_FALSE(CFBooleanGetValue(kCFBooleanFalse));
}

}  // namespace
