#include "zxml/bytes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "zxml/inflated.h"

namespace {

TEST(Bytes, AreEmptyWhenMade) {
  EXPECT_TRUE(Bytes().empty());
  EXPECT_TRUE(Bytes(100).empty());
  EXPECT_EQ(Bytes(0).length(), 0u);
}

TEST(Bytes, AppendToWhatIsThere) {
  Bytes bytes;
  bytes.append("abc", 3);
  bytes.append_byte(0);
  bytes.append("", 0);
  bytes.append(nullptr, 0);
  bytes.append("d", 1);
  EXPECT_EQ(as_string(bytes), std::string("abc\0d", 5));
}

TEST(Bytes, GrowAsNeeded) {
  Bytes bytes(1);
  std::string expected;
  for (int i = 0; i < 100000; ++i) {
    bytes.append_byte(static_cast<unsigned char>(i));
    expected += static_cast<char>(i);
  }
  bytes.append(expected.data(), expected.size());
  EXPECT_EQ(as_string(bytes), expected + expected);
}

TEST(Bytes, KeepWhatIsThereWhenReserving) {
  Bytes bytes;
  bytes.append("abc", 3);
  bytes.reserve(1000);
  bytes.reserve(1);
  EXPECT_EQ(as_string(bytes), "abc");
}

TEST(Bytes, WriteNumbersInBothByteOrders) {
  Bytes bytes;
  bytes.append_number(uint32_t{0x01020304}, true);
  bytes.append_number(uint32_t{0x01020304}, false);
  bytes.append_number(uint64_t{0x0102030405060708}, true);
  bytes.append_number(uint64_t{0xFFFEFDFCFBFAF9F8}, false);
  EXPECT_EQ(as_string(bytes),
            "\x01\x02\x03\x04"
            "\x04\x03\x02\x01"
            "\x01\x02\x03\x04\x05\x06\x07\x08"
            "\xF8\xF9\xFA\xFB\xFC\xFD\xFE\xFF");
}

TEST(Bytes, HandTheirBlockOver) {
  Bytes bytes;
  bytes.append("abc", 3);
  const std::unique_ptr<unsigned char[]> block(bytes.release());
  EXPECT_EQ(block[2], 'c');
  EXPECT_TRUE(bytes.empty());
  bytes.append("x", 1);
  EXPECT_EQ(as_string(bytes), "x");
}

}  // namespace
