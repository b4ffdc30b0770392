#include "plist/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(Base64, DecodesTheWholeAlphabet) {
  const std::string_view text = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes(plist::decoded_capacity(text), '\0');
  ASSERT_EQ(plist::decode_base64(text, reinterpret_cast<unsigned char*>(bytes.data())), 48u);
  EXPECT_EQ(bytes.substr(0, 3), std::string("\x00\x10\x83", 3));
  EXPECT_EQ(bytes.substr(45), "\xF3\xDF\xBF");
}

TEST(Base64, NeverNeedsMoreThanItsCapacity) {
  for (size_t length = 0; length < 20; ++length) {
    const std::string text(length, 'A');
    std::vector<unsigned char> bytes(plist::decoded_capacity(text));
    EXPECT_EQ(plist::decode_base64(text, bytes.data()), bytes.size()) << length;
  }
}

}  // namespace
