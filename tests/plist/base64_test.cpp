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

std::string decoded(std::string_view text) {
  std::string bytes(plist::decoded_capacity(text), '\0');
  bytes.resize(plist::decode_base64(text, reinterpret_cast<unsigned char*>(bytes.data())));
  return bytes;
}

TEST(Base64, LeavesOutWhatPaddingReplaces) {
  EXPECT_EQ(decoded("QUJD"), "ABC");
  EXPECT_EQ(decoded("QUI="), "AB");
  EXPECT_EQ(decoded("QQ=="), "A");
  EXPECT_EQ(decoded("QQ==QUI=QUJD"), "AABABC");
}

TEST(Base64, PassesOverBlanksAndWhatIsNotInTheAlphabet) {
  EXPECT_EQ(decoded(" Q\tU\nJ\rD "), "ABC");
  EXPECT_EQ(decoded("Q*U-J\xFF_D"), "ABC");
}

// Anything else comes between padding and the end of its group.
TEST(Base64, CountsPaddingThroughBlanksOnly) {
  for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r'})
    EXPECT_EQ(decoded(std::string("QQ=") + blank + "="), "A") << static_cast<int>(blank);
  EXPECT_EQ(decoded("QQ=*="), std::string("A\0", 2));
}

TEST(Base64, NeverNeedsMoreThanItsCapacity) {
  for (size_t length = 0; length < 20; ++length) {
    const std::string text(length, 'A');
    std::vector<unsigned char> bytes(plist::decoded_capacity(text));
    EXPECT_EQ(plist::decode_base64(text, bytes.data()), bytes.size()) << length;
  }
}

}  // namespace
