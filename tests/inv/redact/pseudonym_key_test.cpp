#include "inv/redact/pseudonym_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using testing::MatchesRegex;

constexpr char kSalt[] = "000102030405060708090a0b0c0d0e0f";

std::string digits(const std::string& bytes) {
  std::string text;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    text += "0123456789abcdef"[byte / 16];
    text += "0123456789abcdef"[byte % 16];
  }
  return text;
}

TEST(RandomKey, IsAnotherEachTime) {
  EXPECT_EQ(inv::random_key()->size(), 32u);
  EXPECT_NE(inv::random_key(), inv::random_key());
}

TEST(RandomSalt, IsAnotherEachTime) {
  EXPECT_THAT(*inv::random_salt(), MatchesRegex("[0-9a-f]{32}"));
  EXPECT_NE(inv::random_salt(), inv::random_salt());
}

// The value comes from another implementation of Argon2id. It must never change, or redacted files with the
// same key could no longer be compared.
TEST(StretchedKey, IsArgon2id) {
  EXPECT_EQ(digits(*inv::stretched_key("our support key", kSalt)),
            "a87e7e7adf6cf029662bc2cbc5c00113da381647659a8a762c7861cbf18deae5");
}

TEST(StretchedKey, DependsOnKeyAndSalt) {
  const auto key = inv::stretched_key("our support key", kSalt);
  EXPECT_NE(inv::stretched_key("our support kez", kSalt), key);
  EXPECT_NE(inv::stretched_key("our support key", "f" + std::string(kSalt + 1)), key);
}

TEST(StretchedKey, TakesOnlySalts) {
  for (const std::string& salt : {std::string(), std::string("00"), std::string(34, '0'),
                                  std::string(32, 'x'), "0x" + std::string(30, '0')}) {
    EXPECT_FALSE(inv::stretched_key("our support key", salt)) << salt;
  }
}

std::optional<std::string> salt_of(const std::string& lines) {
  return inv::salt_of(*maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n")));
}

TEST(SaltOf, IsWhatTheFileCarries) {
  EXPECT_EQ(salt_of("pseudonym-salt=" + std::string(kSalt) + "\n"), kSalt);
  EXPECT_EQ(salt_of("pseudonym-salt=short\n"), std::nullopt);
  EXPECT_EQ(salt_of("hostname=x\n"), std::nullopt);
}

}  // namespace
