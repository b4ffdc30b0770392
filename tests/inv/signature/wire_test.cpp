#include "inv/signature/wire.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;

TEST(Wire, NumbersBeginWithTheMostSignificantByte) {
  EXPECT_EQ(inv::WireReader("\x01\x02\x03\xF4"sv).take_number(), 0x010203F4u);
  EXPECT_FALSE(inv::WireReader("\x01\x02\x03"sv).take_number());
}

TEST(Wire, StringsFollowTheirLength) {
  inv::WireReader reader("\0\0\0\3abc\0\0\0\0\0\0\0\2d"sv);
  EXPECT_EQ(reader.take_string(), "abc");
  EXPECT_FALSE(reader.at_end());
  EXPECT_EQ(reader.take_string(), "");
  EXPECT_FALSE(reader.take_string());  // two bytes announced, one there
}

TEST(Wire, NoLengthReachesBeyondTheEnd) {
  EXPECT_FALSE(inv::WireReader("\xFF\xFF\xFF\xFF"sv).take_string());
  EXPECT_FALSE(inv::WireReader("\xFF\xFF\xFF\xFFxyz"sv).take_string());
  EXPECT_FALSE(inv::WireReader("").take_string());
}

TEST(Wire, NothingFollowsAFieldThatIsCutShort) {
  inv::WireReader strings("\0\0\0\x7F\0\0\0\1a\0\0\0\1b"sv);
  EXPECT_FALSE(strings.take_string());
  EXPECT_FALSE(strings.take_string());
  inv::WireReader bytes("abcd");
  EXPECT_FALSE(bytes.take(5));
  EXPECT_FALSE(bytes.take(1));
}

TEST(Wire, TakesBytesUpToTheEnd) {
  inv::WireReader reader("abc");
  EXPECT_EQ(reader.take(2), "ab");
  EXPECT_EQ(reader.take(1), "c");
  EXPECT_TRUE(reader.at_end());
  EXPECT_EQ(reader.take(0), "");
}

TEST(Wire, WritesWhatItReads) {
  EXPECT_EQ(inv::wire_string("abc"), "\0\0\0\3abc"sv);
  const std::string large(0x012345, 'x');
  EXPECT_EQ(inv::wire_string(large).substr(0, 5), "\0\x01\x23\x45x"sv);
  EXPECT_EQ(inv::WireReader(inv::wire_string(large)).take_string(), large);
}

}  // namespace
