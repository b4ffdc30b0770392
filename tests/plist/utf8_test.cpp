#include "plist/utf8.h"

#include <gtest/gtest.h>

using plist::Utf8;

namespace {

TEST(Utf8, IsClassified) {
  EXPECT_EQ(plist::classify_utf8(""), Utf8::ascii);
  EXPECT_EQ(plist::classify_utf8("plain text, longer than a word"), Utf8::ascii);
  for (const char* valid :
       {"\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBF\xBE",
        "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "long text with one \xC3\xA4 in its middle"}) {
    EXPECT_EQ(plist::classify_utf8(valid), Utf8::valid) << valid;
  }
  for (const char* invalid :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3x", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "seven bytes\xFF"}) {
    EXPECT_EQ(plist::classify_utf8(invalid), Utf8::invalid) << invalid;
  }
}

TEST(Utf8, ReadsBackWhatItWrites) {
  for (const uint32_t code_point :
       {0x0u, 0x7Fu, 0x80u, 0x7FFu, 0x800u, 0xD7FFu, 0xE000u, 0xFFFFu, 0x10000u, 0x10FFFFu}) {
    std::string text;
    plist::append_utf8(text, code_point);
    const plist::Utf8Sequence sequence = plist::first_sequence(text);
    EXPECT_TRUE(sequence.valid) << code_point;
    EXPECT_EQ(sequence.code_point, code_point);
    EXPECT_EQ(sequence.length, text.size());
  }
}

TEST(Utf8, IsKeptWhereItIsValid) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(plist::repair_utf8(text), text);
}

TEST(Utf8, ReplacesACutCharacterByOneMark) {
  const char* const cut[] = {"\xC3",     "\xE4",         "\xE2\x82", "\xED\x9F",
                             "\xF0\x9F", "\xF0\x9F\x98", "\xF4\x8F", "\xF1\x80\x80"};
  for (const char* bytes : cut) {
    EXPECT_EQ(plist::repair_utf8(bytes), "\uFFFD");
    EXPECT_EQ(plist::repair_utf8("a" + std::string(bytes) + "z"), "a\uFFFDz");
    EXPECT_EQ(plist::repair_utf8(bytes + std::string("\xC3\xA4")), "\uFFFD\u00E4");
  }
}

TEST(Utf8, ReplacesEachByteThatNoCharacterStartsWith) {
  const std::string_view broken[] = {"\xFF",
                                     "\x80\x80",
                                     "\xC0\x80",
                                     "\xE0\x9F\xBF",
                                     "\xED\xA0\x80",
                                     "\xF0\x8F\xBF\xBF",
                                     "\xF4\x90\x80\x80",
                                     "\xF5\x80\x80\x80",
                                     "\xF8\x88\x80\x80\x80"};
  for (const std::string_view bytes : broken) {
    std::string marks;
    for (size_t i = 0; i < bytes.size(); ++i) marks += "\uFFFD";
    EXPECT_EQ(plist::repair_utf8("a" + std::string(bytes) + "z"), "a" + marks + "z");
  }
}

}  // namespace
