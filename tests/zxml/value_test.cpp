#include "zxml/value.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>

namespace {

std::string set_and_read(const std::string& text) {
  Value value;
  value.set_text(text.c_str());
  return value.text();
}

// The line-end conversion as the console's files have always been made, byte by byte: a zero-filled scratch
// buffer, a write offset, and line ends put at the buffer's current string length.
class ScratchBuffer {
 public:
  static std::string convert(const std::string& input) { return ScratchBuffer(input).result(); }

 private:
  explicit ScratchBuffer(const std::string& input) : bytes_(2 * (input.size() + 1), '\0') {
    const char* read = input.c_str();
    size_t write = 0;
    for (;;) {
      const char* line_end = std::strpbrk(read, "\r\n");
      if (!line_end) break;
      const size_t n = static_cast<size_t>(line_end - read);
      if (line_end[0] == '\r' && line_end[1] == '\n') {
        bounded_copy(write, read, n);
        end_with_carriage_return();
        write += n + 1;
        read = line_end + 2;
      } else if (line_end[0] == '\r') {
        bounded_copy(write, read, n + 1);
        write += n + 1;
        read = line_end + 1;
      } else {
        bounded_copy(write, read, n + 1);
        end_with_carriage_return();
        write += n + 2;
        read = line_end + 1;
      }
    }
    const size_t length = string_length();
    for (size_t i = 0; i <= std::strlen(read); ++i) bytes_.at(length + i) = read[i];
  }

  // At most `size` - 1 bytes and a terminator, as strlcpy does; a size of 0 writes nothing.
  void bounded_copy(size_t at, const char* source, size_t size) {
    for (size_t i = 0; i < size; ++i) bytes_.at(at + i) = i + 1 < size ? source[i] : '\0';
  }
  void end_with_carriage_return() {
    const size_t length = string_length();
    bytes_.at(length) = '\r';
    bytes_.at(length + 1) = '\0';
  }
  size_t string_length() const { return std::strlen(bytes_.c_str()); }
  std::string result() const { return bytes_.c_str(); }

  std::string bytes_;
};

std::string trimmed(const std::string& text) {
  if (text.size() <= 1 || (text.front() != ' ' && text.back() != ' ')) return text;
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

struct TextCase {
  const char* name;
  const char* given;
  const char* kept;
};

class ValueSetText : public testing::TestWithParam<TextCase> {};

TEST_P(ValueSetText, KeepsOneLine) { EXPECT_EQ(set_and_read(GetParam().given), GetParam().kept); }

constexpr TextCase kTextCases[] = {
    {"PlainText", "abc", "abc"},
    {"EmptyText", "", ""},
    {"OneLineFeed", "a\nb", "a\rb"},
    {"TrailingLineFeed", "foo\n", "foo\r"},
    {"LeadingLineFeed", "\nfoo", "\rfoo"},
    {"OnlyLineFeed", "\n", "\r"},
    {"PairCutsTheByteBeforeIt", "ab\r\ncd", "a\rcd"},
    {"PairAfterOneByte", "a\r\nb", "\rb"},
    {"LeadingPair", "\r\nab", "\rab"},
    {"TextAfterALeadingPairJoinsOn", "\r\nab\ncd", "\rab\rcd"},
    {"CarriageReturnIsDropped", "a\rb", "ab"},
    {"TrailingCarriageReturnIsDropped", "ab\r", "ab"},
    {"TextBetweenTwoLineFeedsIsLost", "a\nb\nc", "a\r\rc"},
    {"TextBetweenTwoPairsIsLost", "ab\r\ncd\r\nef", "a\r\ref"},
    {"TextBetweenTwoCarriageReturnsIsLost", "a\rb\rc", "ac"},
    {"BlanksAround", "  x  ", "x"},
    {"LeadingBlanks", "  x", "x"},
    {"TrailingBlanks", "x  ", "x"},
    {"BlanksInside", "a  b", "a  b"},
    {"ThreeBlanks", "   ", ""},
    {"TwoBlanks", "  ", ""},
    {"SingleBlankStays", " ", " "},
    {"TabsStay", "\tx\t", "\tx\t"},
    {"BlanksInsideALineEndStay", " a \n", "a \r"},
    {"BlanksAreTrimmedAfterLineEnds", "\n x ", "\r x"},
    {"BytesBeyondAsciiStay", " \xC3\xA4\xFF ", "\xC3\xA4\xFF"},
};

INSTANTIATE_TEST_SUITE_P(Texts, ValueSetText, testing::ValuesIn(kTextCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Value, ConvertsLineEndsExactlyAsTheScratchBufferDid) {
  constexpr char kAlphabet[] = {'a', 'b', '\r', '\n', ' '};
  std::mt19937 random(20240607);
  for (int round = 0; round < 50000; ++round) {
    std::string input(random() % 14, '\0');
    for (char& byte : input) byte = kAlphabet[random() % sizeof kAlphabet];
    ASSERT_EQ(set_and_read(input), trimmed(ScratchBuffer::convert(input))) << testing::PrintToString(input);
  }
}

TEST(Value, ConvertsEveryShortTextExactlyAsTheScratchBufferDid) {
  constexpr char kAlphabet[] = {'a', '\r', '\n', ' '};
  for (size_t length = 0; length <= 7; ++length) {
    const size_t count = size_t{1} << (2 * length);
    for (size_t number = 0; number < count; ++number) {
      std::string input(length, '\0');
      for (size_t i = 0; i < length; ++i) input[i] = kAlphabet[(number >> (2 * i)) & 3];
      ASSERT_EQ(set_and_read(input), trimmed(ScratchBuffer::convert(input))) << testing::PrintToString(input);
    }
  }
}

TEST(Value, ConvertsALongTextInLinearTime) {
  EXPECT_EQ(set_and_read(std::string(4 << 20, '\n')), std::string(4 << 20, '\r'));
  EXPECT_EQ(set_and_read(std::string(4 << 20, ' ')), "");
}

TEST(Value, IsEmptyWhenMade) {
  const Value value;
  EXPECT_EQ(value.kind(), Value::Kind::none);
  EXPECT_EQ(value.text(), nullptr);
}

TEST(Value, IsMadeFromNumbers) {
  EXPECT_EQ(Value(int64_t{-5}).kind(), Value::Kind::int64);
  EXPECT_EQ(Value(int64_t{-5}).int64(), -5);
  EXPECT_EQ(Value(2.5).kind(), Value::Kind::real);
  EXPECT_EQ(Value(2.5).real(), 2.5);
}

TEST(Value, SetsTextByAShortHand) {
  EXPECT_EQ(text_value(" x ").kind(), Value::Kind::text);
  EXPECT_STREQ(text_value(" x ").text(), "x");
}

TEST(Value, TakesNoTextAsTheEmptyText) {
  Value value;
  value.set_text(nullptr);
  EXPECT_EQ(value.kind(), Value::Kind::text);
  EXPECT_STREQ(value.text(), "");
  value.clear();
  value.set_string(nullptr);
  EXPECT_EQ(value.kind(), Value::Kind::text);
  EXPECT_STREQ(value.text(), "");
}

TEST(Value, KeepsAStringExactly) {
  Value value;
  value.set_string("  a\r\nb\n ");
  EXPECT_STREQ(value.text(), "  a\r\nb\n ");
}

TEST(Value, MaySetItsOwnTextAgain) {
  Value value = text_value("a b");
  value.set_text(value.text() + 1);
  EXPECT_STREQ(value.text(), "b");
  value.set_string(value.text());
  EXPECT_STREQ(value.text(), "b");
}

TEST(Value, EverySetterReplacesWhatStoodThere) {
  Value value = text_value("old");
  value.set_bool(true);
  EXPECT_EQ(value.kind(), Value::Kind::boolean);
  EXPECT_TRUE(value.boolean());
  EXPECT_EQ(value.text(), nullptr);
  value.set_int64(std::numeric_limits<int64_t>::min());
  EXPECT_EQ(value.int64(), std::numeric_limits<int64_t>::min());
  EXPECT_FALSE(value.boolean());
  value.set_double(-0.5);
  EXPECT_EQ(value.real(), -0.5);
  EXPECT_EQ(value.int64(), 0);
  value.set_bool(false);
  EXPECT_EQ(value.kind(), Value::Kind::boolean);
  EXPECT_FALSE(value.boolean());
  EXPECT_EQ(value.real(), 0);
  value.set_text("new");
  EXPECT_STREQ(value.text(), "new");
  value.clear();
  EXPECT_EQ(value.kind(), Value::Kind::none);
  EXPECT_EQ(value.text(), nullptr);
}

TEST(Value, AssignsEveryKind) {
  Value truth;
  truth.set_bool(true);
  for (const Value& source : {truth, Value(int64_t{7}), Value(1.5), text_value("x")}) {
    for (const Value& before : {Value(), truth, Value(int64_t{9}), Value(9.0), text_value("before")}) {
      Value value(before);
      value = source;
      EXPECT_EQ(value.kind(), source.kind());
      EXPECT_EQ(value.boolean(), source.boolean());
      EXPECT_EQ(value.int64(), source.int64());
      EXPECT_EQ(value.real(), source.real());
      EXPECT_STREQ(value.text(), source.text());
    }
  }
}

TEST(Value, CopiesItsTextAndSharesNothing) {
  Value source = text_value("abc");
  const Value copy(source);
  source.text()[0] = 'X';
  EXPECT_STREQ(copy.text(), "abc");
}

TEST(Value, AssigningAnEmptyValueKeepsTheOldOne) {
  Value value = text_value("kept");
  const Value empty;
  value = empty;
  EXPECT_STREQ(value.text(), "kept");
  value = Value();
  EXPECT_STREQ(value.text(), "kept");
}

TEST(Value, AssigningItselfChangesNothing) {
  Value value = text_value("same");
  Value& itself = value;
  value = itself;
  EXPECT_STREQ(value.text(), "same");
  value = std::move(itself);
  EXPECT_STREQ(value.text(), "same");
}

TEST(Value, MovingLeavesAnEmptyValueBehind) {
  Value source = text_value("abc");
  const char* text = source.text();
  Value moved(std::move(source));
  EXPECT_EQ(moved.text(), text);
  EXPECT_EQ(source.kind(), Value::Kind::none);  // NOLINT: the moved-from value is what is tested
  EXPECT_EQ(source.text(), nullptr);
  Value number;
  number = std::move(moved);
  EXPECT_STREQ(number.text(), "abc");
}

}  // namespace
