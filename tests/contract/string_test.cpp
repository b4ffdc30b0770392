#include <gtest/gtest.h>

#include <cstring>

#include "contract/objects.h"

namespace {

// One byte, two bytes, three bytes and a pair of surrogates.
const char* const mixed = "a\xC3\xA4\xE2\x80\x99\xF0\x9F\x98\x80z";

CFRef<CFMutableStringRef> mutable_string(const char* text) {
  return CFRef<CFMutableStringRef>(CFStringCreateMutableCopy(nullptr, 0, string_of(text).get()));
}

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

}  // namespace

TEST(Strings, CountUtf16Units) {
  EXPECT_EQ(CFStringGetLength(string_of("abc").get()), 3);
  EXPECT_EQ(CFStringGetLength(string_of(mixed).get()), 6);
  EXPECT_EQ(CFStringGetLength(CFSTR("")), 0);
}

TEST(Strings, GiveUtf16Units) {
  const CFRef<CFStringRef> text = string_of(mixed);
  const UniChar units[] = {'a', 0xE4, 0x2019, 0xD83D, 0xDE00, 'z'};
  for (CFIndex i = 0; i < 6; ++i) EXPECT_EQ(CFStringGetCharacterAtIndex(text.get(), i), units[i]) << i;
  const CFRef<CFStringRef> same(CFStringCreateWithCharacters(nullptr, units, 6));
  EXPECT_EQ(bytes_of_string(same.get()), mixed);
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
  const CFRef<CFStringRef> text = string_of(mixed);
  CFIndex used = 0;
  EXPECT_EQ(
      CFStringGetBytes(text.get(), whole(text.get()), kCFStringEncodingUTF8, 0, false, nullptr, 0, &used), 6);
  EXPECT_EQ(used, static_cast<CFIndex>(std::strlen(mixed)));
}

TEST(Strings, FillABufferWithWholeCharactersOnly) {
  const CFRef<CFStringRef> text = string_of(mixed);
  const std::pair<CFIndex, CFIndex> written_units[] = {{0, 0}, {1, 1}, {2, 1},  {3, 2},  {5, 2},
                                                       {6, 3}, {9, 3}, {10, 5}, {11, 6}, {100, 6}};
  for (const auto& [capacity, units] : written_units) {
    const Converted converted = convert(text.get(), whole(text.get()), capacity);
    EXPECT_EQ(converted.units, units) << capacity;
    EXPECT_EQ(converted.bytes, std::string(mixed).substr(0, converted.bytes.size())) << capacity;
  }
}

TEST(Strings, ConvertARangeOfThemselves) {
  const CFRef<CFStringRef> text = string_of(mixed);
  EXPECT_EQ(convert(text.get(), CFRangeMake(1, 2), 20).bytes, "\xC3\xA4\xE2\x80\x99");
  EXPECT_EQ(convert(text.get(), CFRangeMake(3, 2), 20).bytes, "\xF0\x9F\x98\x80");
  EXPECT_EQ(convert(text.get(), CFRangeMake(6, 0), 20).bytes, "");
}

TEST(Strings, ReplaceOrStopAtWhatAnEncodingLacks) {
  const CFRef<CFStringRef> text = string_of(mixed);
  const Converted replaced = convert(text.get(), whole(text.get()), 20, kCFStringEncodingASCII, '?');
  EXPECT_EQ(replaced.bytes.substr(0, 3), "a??");
  EXPECT_EQ(replaced.units, 6);
  const Converted stopped = convert(text.get(), whole(text.get()), 20, kCFStringEncodingASCII);
  EXPECT_EQ(stopped.bytes, "a");
  EXPECT_EQ(stopped.units, 1);
}

TEST(Strings, BecomeCStringsWhereTheyFit) {
  const CFRef<CFStringRef> text = string_of(mixed);
  char buffer[12];
  EXPECT_TRUE(CFStringGetCString(text.get(), buffer, 12, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer, mixed);
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 11, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 0, kCFStringEncodingUTF8));
  EXPECT_GE(CFStringGetMaximumSizeForEncoding(CFStringGetLength(text.get()), kCFStringEncodingUTF8), 11);
  const char* const direct = CFStringGetCStringPtr(text.get(), kCFStringEncodingUTF8);
  EXPECT_TRUE(!direct || std::strcmp(direct, mixed) == 0);
}

TEST(Strings, CompareByUtf16Units) {
  EXPECT_EQ(CFStringCompare(CFSTR("a"), CFSTR("a"), 0), kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(CFSTR("a"), CFSTR("b"), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(CFSTR("ab"), CFSTR("a"), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(CFSTR("A"), CFSTR("a"), 0), kCFCompareLessThan);
  // U+1F600 is D83D DE00 in UTF-16, and so stands before U+FFFD.
  EXPECT_EQ(CFStringCompare(CFSTR("\xF0\x9F\x98\x80"), CFSTR("\xEF\xBF\xBD"), 0), kCFCompareLessThan);
}

TEST(Strings, FindTexts) {
  const CFRef<CFStringRef> text = string_of(mixed);
  EXPECT_TRUE(CFStringHasPrefix(text.get(), CFSTR("a")));
  EXPECT_FALSE(CFStringHasPrefix(CFSTR("a"), text.get()));
  EXPECT_TRUE(CFStringHasSuffix(text.get(), CFSTR("z")));
  EXPECT_FALSE(CFStringHasSuffix(CFSTR("z"), text.get()));
  const CFRange found = CFStringFind(text.get(), CFSTR("z"), 0);
  EXPECT_EQ(found.location, 5);
  EXPECT_EQ(found.length, 1);
  EXPECT_EQ(CFStringFind(text.get(), CFSTR("b"), 0).location, kCFNotFound);
}

TEST(Strings, FindCharactersOfASet) {
  const CFRef<CFCharacterSetRef> set(
      CFCharacterSetCreateWithCharactersInString(nullptr, string_of("\xE2\x80\x99 /\xF0\x9F\x98\x80").get()));
  const CFRef<CFStringRef> text = string_of(mixed);
  CFRange found;
  ASSERT_TRUE(CFStringFindCharacterFromSet(text.get(), set.get(), whole(text.get()), 0, &found));
  EXPECT_EQ(found.location, 2);
  ASSERT_TRUE(CFStringFindCharacterFromSet(text.get(), set.get(), CFRangeMake(3, 3), 0, &found));
  EXPECT_EQ(found.location, 3);
  EXPECT_FALSE(CFStringFindCharacterFromSet(text.get(), set.get(), CFRangeMake(0, 2), 0, &found));
}

TEST(MutableStrings, ReplaceRanges) {
  const CFRef<CFMutableStringRef> text = mutable_string(mixed);
  CFStringReplace(text.get(), CFRangeMake(2, 3), CFSTR("_"));
  EXPECT_EQ(bytes_of_string(text.get()), "a\xC3\xA4_z");
  EXPECT_EQ(CFStringGetLength(text.get()), 4);
}

TEST(MutableStrings, ReplaceEveryOccurrenceInARange) {
  const CFRef<CFMutableStringRef> text = mutable_string("a.b.c.");
  EXPECT_EQ(CFStringFindAndReplace(text.get(), CFSTR("."), CFSTR(".."), CFRangeMake(0, 4), 0), 2);
  EXPECT_EQ(bytes_of_string(text.get()), "a..b..c.");
  EXPECT_EQ(CFStringFindAndReplace(text.get(), CFSTR("x"), CFSTR("y"), whole(text.get()), 0), 0);
}

TEST(MutableStrings, GrowByAppending) {
  const CFRef<CFMutableStringRef> text(CFStringCreateMutable(nullptr, 0));
  CFStringAppend(text.get(), CFSTR("a"));
  CFStringAppendCString(text.get(), "b", kCFStringEncodingUTF8);
  CFStringAppendFormat(text.get(), nullptr, CFSTR("%d"), 3);
  CFStringAppend(text.get(), text.get());
  EXPECT_EQ(bytes_of_string(text.get()), "ab3ab3");
}

TEST(MutableStrings, AreCopiedAsTheyAre) {
  const CFRef<CFMutableStringRef> text = mutable_string("before");
  const CFRef<CFStringRef> copy(CFStringCreateCopy(nullptr, text.get()));
  CFStringReplace(text.get(), whole(text.get()), CFSTR("after"));
  EXPECT_EQ(bytes_of_string(copy.get()), "before");
}

TEST(FormattedStrings, TakeObjectsAndPrintfsConversions) {
  const int number = -3;
  const CFRef<CFNumberRef> object(CFNumberCreate(nullptr, kCFNumberIntType, &number));
  const CFRef<CFStringRef> text(
      CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%@/%@ %d %ld %lld %u %05x %s %c %C %.1f %%"),
                               CFSTR("a"), object.get(), -1, -2L, -3LL, 4u, 255u, "text", 'c', 0x2019, 2.25));
  EXPECT_EQ(bytes_of_string(text.get()), "a/-3 -1 -2 -3 4 000ff text c \xE2\x80\x99 2.2 %");
}

TEST(FormattedStrings, KeepWhatIsNoConversion) {
  const CFRef<CFStringRef> text(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("plain \xC3\xA4")));
  EXPECT_EQ(bytes_of_string(text.get()), "plain \xC3\xA4");
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
