#include "inv/base/sha256.h"

#include <gtest/gtest.h>

namespace {

using inv::hexadecimal;

TEST(Sha256, GivesTheStandardsDigest) {
  EXPECT_EQ(hexadecimal(inv::sha256("")), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(hexadecimal(inv::sha256("abc")),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, HmacTakesKeysOfAnyLength) {
  EXPECT_EQ(hexadecimal(inv::hmac_sha256("Jefe", "what do ya want for nothing?")),
            "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
  EXPECT_EQ(hexadecimal(inv::hmac_sha256(std::string(131, '\xAA'),
                                         "Test Using Larger Than Block-Size Key - Hash Key First")),
            "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54");
}

}  // namespace
