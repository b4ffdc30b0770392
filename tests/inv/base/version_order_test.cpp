#include "inv/base/version_order.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>

namespace {

void expect_before(std::string_view earlier, std::string_view later) {
  EXPECT_LT(inv::compare_versions(earlier, later), 0) << earlier << " " << later;
  EXPECT_GT(inv::compare_versions(later, earlier), 0) << earlier << " " << later;
}

void expect_equal(std::string_view one, std::string_view other) {
  EXPECT_EQ(inv::compare_versions(one, other), 0) << one << " " << other;
  EXPECT_EQ(inv::compare_versions(other, one), 0) << one << " " << other;
}

TEST(CompareVersions, CountsNumbersAsNumbers) {
  expect_before("5.9", "5.10");
  expect_before("9", "10");
  expect_before("5.1.9", "5.1.10");
  expect_before("2012.1.2", "2012.2.1");
  expect_before("", "0.1");
}

TEST(CompareVersions, CountsAMissingPartAsZero) {
  expect_equal("6", "6.0");
  expect_equal("6.0", "6.0.0");
  expect_equal("", "0");
  expect_equal("06.01", "6.1");
  expect_before("6", "6.0.1");
}

TEST(CompareVersions, PutsPreReleasesBeforeAndOtherWordsAfter) {
  expect_before("6.0b2", "6.0");
  expect_before("6.0a9", "6.0b1");
  expect_before("6.0b2", "6.0b10");
  expect_before("6.0 beta 1", "6.0");
  expect_before("3.0-rc1", "3.0");
  expect_before("1.0.2", "1.0.2k");
  expect_before("1.0.2k", "1.0.2l");
  expect_before("5.9", "6.0b1");
}

TEST(CompareVersions, ReadsBuildsAfterVersions) {
  expect_before("10.6.8", "10.6.8 (10K549)");
  expect_before("10.6.8 (10K540)", "10.6.8 (10K549)");
  expect_before("10.6.8 (10K549)", "10.7");
}

TEST(CompareVersions, SkipsSeparators) {
  expect_equal("1.2", "1,2");
  expect_equal("(1) 2", "1.2");
  expect_equal("6.0B2", "6.0b2");
}

int sign(int number) { return (number > 0) - (number < 0); }

// Numbers of several lengths, zeros, announcements and other words, one after another.
std::string some_version(std::mt19937& random) {
  constexpr const char* kParts[] = {"0",          "0",           "1",           "2", "9",      "10",
                                    "9999999999", "10000000000", "99999999999", "a", "b",      "beta",
                                    "rc",         "k",           "kb",          "z", "\u00E9", "K"};
  std::string version;
  for (size_t parts = random() % 6; parts > 0; --parts) {
    version += kParts[random() % std::size(kParts)];
    version += "  .-"[random() % 4];
  }
  return version;
}

TEST(VersionKey, SortsAsTheVersionsDo) {
  std::mt19937 random(17);
  for (int i = 0; i < 200'000; ++i) {
    const std::string one = some_version(random), other = some_version(random);
    const int order = inv::version_key(one).compare(inv::version_key(other));
    ASSERT_EQ(sign(order), sign(inv::compare_versions(one, other))) << one << " | " << other;
  }
}

TEST(VersionKey, IsEasilyMadeByHandForNumbers) {
  EXPECT_EQ(inv::version_key("5.10"), ".0000000005.0000000010.");
  EXPECT_EQ(inv::version_key("5.10.0"), ".0000000005.0000000010.");
  EXPECT_EQ(inv::version_key("5.0.1"), ".0000000005.0000000000.0000000001.");
  EXPECT_EQ(inv::version_key("6.0b2"), ".0000000006-~b.0000000002.");
  EXPECT_EQ(inv::version_key(""), ".");
}

TEST(VersionKey, IsMissingForWhatIsTooLong) {
  EXPECT_NE(inv::version_key(std::string(1000, '1')), "");
  EXPECT_EQ(inv::version_key(std::string(1001, '1')), "");
}

TEST(VersionKey, OfALongerNumberIsTheLargerOne) {
  EXPECT_LT(inv::version_key("99999999999"), inv::version_key("100000000000"));
  EXPECT_LT(inv::version_key("9999999999"), inv::version_key("10000000000"));
}

TEST(CompareVersions, TakesNumbersOfAnyLength) {
  expect_before(std::string(400, '9'), "1" + std::string(400, '0'));
}

TEST(CompareVersions, IsAnOrder) {
  const std::string_view versions[] = {"",     "0",     "a",  "b1",   "1",     "1.0", "1a",
                                       "1.0a", "1.0.a", "1k", "1.0k", "1.b.2", "2",   "\xC3\xA4"};
  for (const std::string_view a : versions) {
    for (const std::string_view b : versions) {
      EXPECT_EQ(inv::compare_versions(a, b) < 0, inv::compare_versions(b, a) > 0) << a << " " << b;
      for (const std::string_view c : versions) {
        if (inv::compare_versions(a, b) <= 0 && inv::compare_versions(b, c) <= 0) {
          EXPECT_LE(inv::compare_versions(a, c), 0) << a << " " << b << " " << c;
        }
      }
    }
  }
}

}  // namespace
