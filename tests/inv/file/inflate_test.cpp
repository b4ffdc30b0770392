#include "inv/file/inflate.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

TEST(Inflate, GivesTheBytesAndWhereTheStreamEnds) {
  const std::string stream = maker::deflated("hello");
  const inv::Inflated inflated = inv::inflate_stream(stream + "rest", 100);
  EXPECT_EQ(inflated.bytes, "hello");
  EXPECT_EQ(inflated.consumed, stream.size());
  EXPECT_EQ(inflated.error, "");
}

TEST(Inflate, StopsAfterTheLimit) {
  const std::string stream = maker::deflated(std::string(1 << 20, 'x'));
  EXPECT_EQ(inv::inflate_stream(stream, 1 << 20).bytes.size(), size_t{1} << 20);
  const inv::Inflated cut = inv::inflate_stream(stream, (1 << 20) - 1);
  EXPECT_EQ(cut.bytes, "");
  EXPECT_EQ(cut.error, "it inflates to more than 1048575 bytes");
}

TEST(Inflate, NamesWhatIsWrong) {
  EXPECT_EQ(inv::inflate_stream("", 100).error, "the zlib stream is cut short");
  EXPECT_EQ(inv::inflate_stream("not zlib", 100).error,
            "the zlib stream is damaged (incorrect header check)");
  const std::string stream = maker::deflated("hello");
  EXPECT_EQ(inv::inflate_stream(stream.substr(0, stream.size() - 1), 100).error,
            "the zlib stream is cut short");
  // The header's bit 5 of the second byte asks for a dictionary; the check bits are made to fit.
  EXPECT_EQ(inv::inflate_stream(std::string("\x78\xBB\0\0\0\1", 6), 100).error,
            "the zlib stream needs a preset dictionary");
}

}  // namespace
