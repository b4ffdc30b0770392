#include "inv/base/utf8.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8, KeepsValidTextOfEveryLength) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_TRUE(inv::is_utf8(text));
  EXPECT_EQ(inv::to_utf8(text), text);
}

TEST(Utf8, ReplacesWhatIsBroken) {
  EXPECT_FALSE(inv::is_utf8("caf\xE9!"));
  EXPECT_EQ(inv::to_utf8("caf\xE9!"), "caf\uFFFD!");
  EXPECT_EQ(inv::to_utf8("\xE2\x82|\x80\x80"), "\uFFFD|\uFFFD\uFFFD");
}

TEST(Utf8, PrintsTheSameCharactersThatItConverts) {
  EXPECT_EQ(inv::printable("a\xF0\x9F\x98z"), "a\uFFFDz");
  EXPECT_EQ(inv::columns("a\xF0\x9F\x98z"), 3u);
  EXPECT_EQ(inv::shorten("\xF0\x9F\x98zz", 2), "\xF0\x9F\x98\u2026");
}

TEST(Utf8, PrintableDisarmsWhatATerminalWouldObey) {
  EXPECT_EQ(inv::printable("a\x1B[31mb"), "a\xEF\xBF\xBD[31mb");
  EXPECT_EQ(inv::printable("one\rtwo"), "one\xE2\x86\xB5two");
  EXPECT_EQ(inv::printable("\xC2\x9B"
                           "2J"),
            "\xEF\xBF\xBD"
            "2J");
  EXPECT_EQ(inv::printable("\xE2\x80\xAE"
                           "txt"),
            "\xEF\xBF\xBD"
            "txt");
  EXPECT_EQ(inv::printable("\xD7\xA9\xD7\x9C"), "\xD7\xA9\xD7\x9C");
}

TEST(Utf8, PrintableShowsWhatHasNoWidth) {
  for (const char* unseen : {"\u200B", "\u200D", "\u2060", "\uFEFF", "\u180E", "\U000E0041", "\uFFF9"}) {
    EXPECT_EQ(inv::printable(unseen), "\uFFFD") << unseen;
  }
}

TEST(Utf8, PrintableLinesKeepTheirEnds) {
  EXPECT_EQ(inv::printable_lines("a\x1B\nb\r\nc\rd\n\ne"), "a\uFFFD\nb\nc\u21B5d\n\ne");
  EXPECT_EQ(inv::printable_lines(""), "");
  EXPECT_EQ(inv::printable_lines("\r\n"), "\n");
}

TEST(Utf8, CountsColumnsNotBytes) {
  EXPECT_EQ(inv::columns("abc"), 3u);
  EXPECT_EQ(inv::columns("e\xCC\x81"), 1u);
  EXPECT_EQ(inv::columns("\xE6\x97\xA5\xE6\x9C\xAC"), 4u);
}

TEST(Utf8, CountsMarksWithTheirLetters) {
  EXPECT_EQ(inv::columns("\u304B\u3099"), 2u);  // KA with its mark, as a Mac's file system takes it apart
  EXPECT_EQ(inv::columns("\u1112\u1161\u11AB"), 2u);  // a Korean syllable, the same
  EXPECT_EQ(inv::columns("\u0E01\u0E34\u0E48"), 1u);  // Thai
  EXPECT_EQ(inv::columns("\u05E9\u05C1"), 1u);        // Hebrew
  EXPECT_EQ(inv::columns("\u0915\u0941"), 1u);        // Devanagari
}

TEST(Utf8, CountsTwoColumnsForPictures) {
  for (const char* picture :
       {"\u231A", "\u26A1", "\u2705", "\u2B50", "\U0001F004", "\U0001F600", "\U0001F9D1"}) {
    EXPECT_EQ(inv::columns(picture), 2u) << picture;
  }
  for (const char* narrow : {"\u2318", "\u2713", "\u2605", "\u303F", "\U0001F321"}) {
    EXPECT_EQ(inv::columns(narrow), 1u) << narrow;
  }
}

TEST(Utf8, ABeginningIsNotShortenedBetweenALetterAndItsMark) {
  EXPECT_EQ(inv::shorten_beginning("abce\u0301d", 2), "\u2026d");
  EXPECT_EQ(inv::shorten_beginning("abcde\u0301", 2), "\u2026e\u0301");
}

TEST(Utf8, ShortensTheBeginningToo) {
  EXPECT_EQ(inv::shorten_beginning("abcdef", 6), "abcdef");
  EXPECT_EQ(inv::shorten_beginning("abcdefg", 6),
            "\xE2\x80\xA6"
            "cdefg");
  EXPECT_EQ(inv::shorten_beginning("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", 4), "\xE2\x80\xA6\xE8\xAA\x9E");
  EXPECT_EQ(inv::shorten_beginning("ab", 1), "\xE2\x80\xA6");
  EXPECT_EQ(inv::shorten_beginning("ab", 0), "");
}

TEST(Utf8, ShortensToColumnsWithAnEllipsis) {
  EXPECT_EQ(inv::shorten("abcdef", 6), "abcdef");
  EXPECT_EQ(inv::shorten("abcdefg", 6), "abcde\xE2\x80\xA6");
  EXPECT_EQ(inv::shorten("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", 4), "\xE6\x97\xA5\xE2\x80\xA6");
}

TEST(Utf8, PadsToColumns) {
  EXPECT_EQ(inv::pad_right("\xC3\xA9", 3), "\xC3\xA9  ");
  EXPECT_EQ(inv::pad_left("\xC3\xA9", 3), "  \xC3\xA9");
  EXPECT_EQ(inv::pad_right("abcd", 3), "abcd");
}

}  // namespace
