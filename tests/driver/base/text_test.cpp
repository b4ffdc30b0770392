#include "driver/base/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(FormatString, GivesJustATerminatorForAnEmptyFormat) {
  // Not a literal in the call, about which the compiler would warn. This is how an absent login becomes "".
  const char* volatile empty = "";
  const Text text = format_string(empty, 0);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text[0], '\0');
}

TEST(FormatString, FormatsLikePrintf) {
  EXPECT_STREQ(format_string("%s_%s(%d).inv", "MAC", "0017", 2).get(), "MAC_0017(2).inv");
  EXPECT_STREQ(format_string("%lld|%.2f|%u|%c", -5LL, 3.14159, 4000000000u, 'x').get(),
               "-5|3.14|4000000000|x");
}

TEST(FormatString, HasNoLengthLimit) {
  const std::string megabyte(1 << 20, 'x');
  const Text text = format_string("<%s>", megabyte.c_str());
  EXPECT_EQ(std::string(text.get()), "<" + megabyte + ">");
}

TEST(FormatString, KeepsBytesThatAreNotText) {
  EXPECT_STREQ(format_string("%s", "\xFF\xC3").get(), "\xFF\xC3");
}

TEST(FormatString, ShowsANullTextAsNull) {
  // Not a literal in the call, about which the compiler would warn.
  const char* volatile none = nullptr;
  EXPECT_STREQ(format_string("<%s>", none).get(), "<(null)>");
}

TEST(FormatString, IsEmptyWhenTheTextCannotBeFormatted) {
  // No program calls setlocale, so a wide character beyond ASCII has no form.
  const wchar_t wide[] = {0x4E2D, 0};
  EXPECT_LT(measure_format("%ls", wide), 0);
  EXPECT_STREQ(format_string("a%ls", wide).get(), "");
}

TEST(MeasureFormat, CountsTheBytesWithoutTheTerminator) {
  EXPECT_EQ(measure_format("%s", ""), 0);
  EXPECT_EQ(measure_format("[%d]\noffset=%u\n", 3, 1000u), 16);
  EXPECT_EQ(measure_format("%s", "\xC3\xA4"), 2);
}

TEST(CopyRange, CopiesUpToTheEnd) {
  const char text[] = "abcdef";
  EXPECT_STREQ(copy_range(text + 1, text + 4).get(), "bcd");
}

TEST(CopyRange, GivesTheEmptyTextForAnEmptyRange) {
  const char text[] = "abc";
  EXPECT_STREQ(copy_range(text + 1, text + 1).get(), "");
  EXPECT_STREQ(copy_range(nullptr, nullptr).get(), "");
}

TEST(CopyRange, CopiesNulBytes) {
  const char bytes[] = {'a', '\0', 'b'};
  const Text copy = copy_range(bytes, bytes + 3);
  EXPECT_EQ(std::string(copy.get(), 4), std::string("a\0b\0", 4));
}

TEST(CopyText, ReturnsNullForNull) { EXPECT_EQ(copy_text(nullptr), nullptr); }

TEST(CopyText, CopiesIntoAFreshBuffer) {
  const char text[] = "abc";
  const Text copy = copy_text(text);
  EXPECT_NE(copy.get(), text);
  EXPECT_STREQ(copy.get(), "abc");
  EXPECT_STREQ(copy_text("").get(), "");
}

TEST(UpperCaseAscii, ChangesTheLettersAToZOnly) {
  char text[] = "az`{AZ09-_\xC3\xA4\xFF";
  upper_case_ascii(text);
  EXPECT_STREQ(text, "AZ`{AZ09-_\xC3\xA4\xFF");
  EXPECT_EQ(upper_case_ascii('q'), 'Q');
  EXPECT_EQ(upper_case_ascii('7'), '7');
}

TEST(StripDashes, RemovesEveryDash) {
  EXPECT_STREQ(strip_dashes("00-17-F2").get(), "0017F2");
  EXPECT_STREQ(strip_dashes("--").get(), "");
  EXPECT_STREQ(strip_dashes("").get(), "");
  EXPECT_STREQ(strip_dashes("a_b").get(), "a_b");
}

TEST(EqualText, NeedsBothTexts) {
  EXPECT_TRUE(equal_text("a", "a"));
  EXPECT_TRUE(equal_text("", ""));
  EXPECT_FALSE(equal_text("a", "A"));
  EXPECT_FALSE(equal_text("a", "ab"));
  EXPECT_FALSE(equal_text(nullptr, "a"));
  EXPECT_FALSE(equal_text("a", nullptr));
  EXPECT_FALSE(equal_text(nullptr, nullptr));
}

}  // namespace
