#include "inv/base/base64.h"

#include <gtest/gtest.h>

namespace {

TEST(Base64, IsWhatBrowsersCompare) {
  EXPECT_EQ(inv::base64(inv::sha256("")), "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
}

TEST(Base64, ReadsGroupsOfEveryLength) {
  EXPECT_EQ(inv::from_base64(""), "");
  EXPECT_EQ(inv::from_base64("Zg=="), "f");
  EXPECT_EQ(inv::from_base64("Zm8="), "fo");
  EXPECT_EQ(inv::from_base64("Zm9v"), "foo");
  EXPECT_EQ(inv::from_base64("+/8="), "\xFB\xFF");
}

TEST(Base64, PassesOverBlanksAndLineEndsAnywhere) {
  EXPECT_EQ(inv::from_base64(" Z\tm\n9\v\f\r\nv Zg = \n= "), "foof");
}

TEST(Base64, RefusesAnythingElse) {
  for (const std::string_view text : {"Zg", "Zg=", "Zg===", "Z", "Zm9vZ", "=", "Zm9v=", "Zg==Zg==", "Zm9-",
                                      "Zm9_", "Zm9v!", "Zh==", "Zm9\x80", "\xFFm9v"}) {
    EXPECT_FALSE(inv::from_base64(text)) << text;
  }
  EXPECT_FALSE(inv::from_base64(std::string_view("Zm9v\0", 5)));
  EXPECT_FALSE(inv::from_base64(std::string_view("Zm\0009v", 5)));
}

}  // namespace
