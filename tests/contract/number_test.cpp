#include <gtest/gtest.h>

#include <cstdint>

#include "contract/objects.h"

namespace {

template <typename T>
CFRef<CFNumberRef> number(CFNumberType type, T value) {
  return CFRef<CFNumberRef>(CFNumberCreate(nullptr, type, &value));
}

TEST(Numbers, ConvertToNarrowerIntegersAndReportLosses) {
  const CFRef<CFNumberRef> large = number(kCFNumberSInt64Type, int64_t{5000000000});
  int32_t narrow = 0;
  EXPECT_FALSE(CFNumberGetValue(large.get(), kCFNumberSInt32Type, &narrow));
  const CFRef<CFNumberRef> small = number(kCFNumberSInt64Type, int64_t{-7});
  EXPECT_TRUE(CFNumberGetValue(small.get(), kCFNumberSInt32Type, &narrow));
  EXPECT_EQ(narrow, -7);
  short shorter = 0;
  EXPECT_TRUE(CFNumberGetValue(small.get(), kCFNumberShortType, &shorter));
  EXPECT_EQ(shorter, -7);
  int8_t byte = 0;
  EXPECT_TRUE(CFNumberGetValue(small.get(), kCFNumberSInt8Type, &byte));
  EXPECT_EQ(byte, -7);
}

TEST(Numbers, ConvertToRealsAndReportLosses) {
  double real = 0;
  EXPECT_TRUE(CFNumberGetValue(number(kCFNumberSInt64Type, int64_t{3}).get(), kCFNumberFloat64Type, &real));
  EXPECT_EQ(real, 3);
  EXPECT_FALSE(CFNumberGetValue(number(kCFNumberSInt64Type, INT64_MAX).get(), kCFNumberFloat64Type, &real));
  float narrow = 0;
  EXPECT_TRUE(CFNumberGetValue(number(kCFNumberFloat64Type, 0.5).get(), kCFNumberFloat32Type, &narrow));
  EXPECT_EQ(narrow, 0.5f);
  EXPECT_FALSE(CFNumberGetValue(number(kCFNumberFloat64Type, 0.1).get(), kCFNumberFloatType, &narrow));
}

TEST(Numbers, SayWhetherTheyAreReals) {
  EXPECT_TRUE(CFNumberIsFloatType(number(kCFNumberFloatType, 1.0f).get()));
  EXPECT_TRUE(CFNumberIsFloatType(number(kCFNumberDoubleType, 1.0).get()));
  EXPECT_FALSE(CFNumberIsFloatType(number(kCFNumberIntType, 1).get()));
  EXPECT_FALSE(CFNumberIsFloatType(number(kCFNumberLongLongType, 1LL).get()));
}

TEST(Numbers, AreEqualByValue) {
  EXPECT_TRUE(CFEqual(number(kCFNumberSInt64Type, int64_t{2}).get(), number(kCFNumberIntType, 2).get()));
  EXPECT_TRUE(CFEqual(number(kCFNumberSInt64Type, int64_t{2}).get(), number(kCFNumberDoubleType, 2.0).get()));
  EXPECT_FALSE(
      CFEqual(number(kCFNumberSInt64Type, int64_t{2}).get(), number(kCFNumberDoubleType, 2.5).get()));
  EXPECT_FALSE(CFEqual(number(kCFNumberSInt64Type, INT64_MAX).get(),
                       number(kCFNumberDoubleType, 9223372036854775808.0).get()));
}

}  // namespace
