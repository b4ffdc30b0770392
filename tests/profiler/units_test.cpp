#include "profiler/units.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace {

using Conversion = double (*)(char*);

double convert(Conversion conversion, std::string size) { return conversion(size.data()); }

struct Size {
  const char* text;
  Conversion conversion;
  double number;
};

class SizeConversion : public testing::TestWithParam<Size> {};

TEST_P(SizeConversion, GivesTheNumberInItsUnit) {
  EXPECT_EQ(GetParam().number, convert(GetParam().conversion, GetParam().text)) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Gb, SizeConversion,
                         testing::Values(Size{"1048576 KB", size_to_gb, 1}, Size{"512 MB", size_to_gb, 0.5},
                                         Size{"4 GB", size_to_gb, 4}, Size{"2 TB", size_to_gb, 2000}));

INSTANTIATE_TEST_SUITE_P(GbBinary, SizeConversion,
                         testing::Values(Size{"1048576 KB", size_to_gb_binary, 1},
                                         Size{"512 MB", size_to_gb_binary, 0.5},
                                         Size{"4 GB", size_to_gb_binary, 4},
                                         Size{"2 TB", size_to_gb_binary, 2048}));

INSTANTIATE_TEST_SUITE_P(Mb, SizeConversion,
                         testing::Values(Size{"512 KB", size_to_mb, 0.5}, Size{"512 MB", size_to_mb, 512},
                                         Size{"1.5 GB", size_to_mb, 1536},
                                         Size{"2 TB", size_to_mb, 2097152}));

INSTANTIATE_TEST_SUITE_P(Kb, SizeConversion,
                         testing::Values(Size{"256 KB", size_to_kb, 256}, Size{"8 MB", size_to_kb, 8192},
                                         Size{"1 GB", size_to_kb, 1048576},
                                         Size{"1 TB", size_to_kb, 1073741824}));

// The single-precision number next to 3.7 is 3.7000000476837158203125, and its product is the figure that the
// console has always shown: not 3879731.2, as double precision has it.
INSTANTIATE_TEST_SUITE_P(SinglePrecision, SizeConversion,
                         testing::Values(Size{"3.7 GB", size_to_kb, 3879731.25},
                                         Size{"3.7 GB", size_to_gb, 3.7000000476837158203125},
                                         Size{"500.11 GB", size_to_gb, 500.1099853515625},
                                         // 16777217 has no single-precision form of its own.
                                         Size{"16777217 KB", size_to_kb, 16777216},
                                         // The product is rounded as well: it would be 100.00000149...
                                         Size{"0.1 TB", size_to_gb, 100}));

INSTANTIATE_TEST_SUITE_P(Shapes, SizeConversion,
                         testing::Values(
                             // Exactly one separator is cut off, and blanks around the number do not matter.
                             Size{"1  GB", size_to_gb, 1}, Size{"  1 GB", size_to_gb, 1},
                             Size{"1\xC2\xA0GB", size_to_gb, 1},
                             // Without a separator the last digit is taken for it.
                             Size{"12GB", size_to_gb, 1},
                             // The number ends where it cannot be read on.
                             Size{"1.5.7 GB", size_to_gb, 1.5}, Size{"1,5,7 GB", size_to_gb, 1.5},
                             Size{"-1 GB", size_to_gb, -1}, Size{"1e3 MB", size_to_mb, 1000}));

INSTANTIATE_TEST_SUITE_P(Unreadable, SizeConversion,
                         testing::Values(Size{"", size_to_gb, 0}, Size{"B", size_to_gb, 0},
                                         Size{"GB", size_to_gb, 0}, Size{" GB", size_to_gb, 0},
                                         Size{"x GB", size_to_gb, 0}, Size{"1 kB", size_to_kb, 0},
                                         Size{"1 gb", size_to_gb, 0}, Size{"1 GiB", size_to_gb, 0},
                                         Size{"1024 B", size_to_kb, 0}, Size{"1 GB ", size_to_gb, 0},
                                         Size{"1 GB free", size_to_gb, 0}, Size{"1024", size_to_kb, 0},
                                         Size{"spdisplays_integrated_vram", size_to_mb, 0}));

TEST(SizeConversion, TakesNoneForZero) {
  for (const Conversion conversion : {size_to_gb, size_to_gb_binary, size_to_mb, size_to_kb})
    EXPECT_EQ(0, conversion(nullptr));
  EXPECT_EQ(0, size_to_bytes(nullptr));
  EXPECT_EQ(0, size_to_decimal_gb(nullptr, false));
}

TEST(SizeConversion, ReplacesCommasInTheCallersText) {
  std::string size = "1,5 GB";
  EXPECT_EQ(1536.0, size_to_mb(size.data()));
  EXPECT_EQ("1.5 GB", size);
}

TEST(SizeConversion, ReplacesCommasAlsoInWhatIsNoSize) {
  for (const auto& [text, after] :
       {std::pair("a,b,c", "a.b.c"), std::pair(",", "."), std::pair("1,5 kB", "1.5 kB")}) {
    std::string size = text;
    EXPECT_EQ(0, size_to_gb(size.data()));
    EXPECT_EQ(after, size);
  }
}

TEST(SizeConversion, GivesInfinityBeyondSinglePrecision) {
  EXPECT_EQ(HUGE_VAL, convert(size_to_gb, "inf GB"));
  EXPECT_EQ(HUGE_VAL, convert(size_to_gb, "1e40 TB"));
  EXPECT_EQ(HUGE_VAL, convert(size_to_gb, "1e38 TB"));
  EXPECT_TRUE(std::isnan(convert(size_to_gb, "nan GB")));
}

int64_t bytes(std::string size) { return size_to_bytes(size.data()); }

TEST(SizeToBytes, CountsBinaryBytesButForTheThousandInATb) {
  EXPECT_EQ(1024, bytes("1 KB"));
  EXPECT_EQ(1073741824, bytes("1 GB"));
  EXPECT_EQ(1610612736, bytes("1,5 GB"));
  EXPECT_EQ(1073741824000, bytes("1 TB"));
}

TEST(SizeToBytes, CutsFractionsOffTowardsZero) {
  EXPECT_EQ(1, bytes("0.00185 KB"));
  EXPECT_EQ(-1, bytes("-0.00185 KB"));
}

TEST(SizeToBytes, StaysInItsRangeWhateverTheText) {
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), bytes("inf GB"));
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), bytes("1e40 TB"));
  EXPECT_EQ(std::numeric_limits<int64_t>::min(), bytes("-1e30 GB"));
  EXPECT_EQ(0, bytes("nan GB"));
  EXPECT_EQ(0, bytes("GB"));
}

double decimal_gb(std::string size, bool round) { return size_to_decimal_gb(size.data(), round); }

TEST(SizeToDecimalGb, CountsAsDiskMakersDo) {
  EXPECT_NEAR(536.989, decimal_gb("500.11 GB", false), 0.001);
  EXPECT_EQ(537, decimal_gb("500.11 GB", true));
  // A TB is a thousand binary GB here as well.
  EXPECT_NEAR(1073.742, decimal_gb("1 TB", false), 0.001);
}

TEST(SizeToDecimalGb, RoundsUpAboveFourTenths) {
  EXPECT_EQ(232, decimal_gb("216.34 GB", true));  // 232.29
  EXPECT_EQ(232, decimal_gb("216.43 GB", true));  // 232.39
  EXPECT_EQ(233, decimal_gb("216.45 GB", true));  // 232.41
  EXPECT_EQ(233, decimal_gb("216.63 GB", true));  // 232.60
}

TEST(SizeToDecimalGb, KeepsTheRoundedNumberInThirtyTwoBits) {
  EXPECT_EQ(std::numeric_limits<int32_t>::max(), decimal_gb("inf GB", true));
  EXPECT_EQ(std::numeric_limits<int32_t>::max(), decimal_gb("1e40 TB", true));
  EXPECT_EQ(std::numeric_limits<int32_t>::min(), decimal_gb("-1e30 GB", true));
  EXPECT_EQ(0, decimal_gb("nan GB", true));
  EXPECT_EQ(0, decimal_gb("GB", true));
}

TEST(BytesToDecimalGb, DividesByTenToTheNinth) {
  EXPECT_EQ(0, bytes_to_decimal_gb(0));
  EXPECT_DOUBLE_EQ(1, bytes_to_decimal_gb(1000000000));
  EXPECT_DOUBLE_EQ(500.107862016, bytes_to_decimal_gb(500107862016));
  EXPECT_DOUBLE_EQ(18446744073.709552, bytes_to_decimal_gb(std::numeric_limits<uint64_t>::max()));
}

TEST(SpeedToMhz, MultipliesInSinglePrecision) {
  EXPECT_EQ(2400, speed_to_mhz("2.4 GHz"));
  // In double precision the product is a little less than 1001, which would be cut down to 1000.
  EXPECT_EQ(1001, truncate_to_int64(speed_to_mhz("1.001 GHz")));
  EXPECT_EQ(2930, speed_to_mhz("2.93"));
}

TEST(SpeedToMhz, DoesNotLookAtTheUnit) { EXPECT_EQ(800000, speed_to_mhz("800 MHz")); }

TEST(SpeedToMhz, ReadsNoDecimalComma) { EXPECT_EQ(2000, speed_to_mhz("2,4 GHz")); }

TEST(SpeedToMhz, GivesZeroForNoNumber) {
  EXPECT_EQ(0, speed_to_mhz(""));
  EXPECT_EQ(0, speed_to_mhz("fast"));
}

TEST(Truncation, DropsTheFraction) {
  EXPECT_EQ(2, truncate_to_int64(2.99));
  EXPECT_EQ(-2, truncate_to_int64(-2.99));
  EXPECT_EQ(2, truncate_to_int32(2.99));
  EXPECT_EQ(2u, truncate_to_uint32(2.99));
  EXPECT_EQ(2u, truncate_to_uint64(2.99));
}

TEST(Truncation, KeepsTheLargestNumbersThatFit) {
  EXPECT_EQ(9223372036854774784, truncate_to_int64(9223372036854774784.0));
  EXPECT_EQ(2147483647, truncate_to_int32(2147483647.0));
  EXPECT_EQ(-2147483648, truncate_to_int32(-2147483648.0));
  EXPECT_EQ(2147483648u, truncate_to_uint32(2147483648.0));
  EXPECT_EQ(4294967295u, truncate_to_uint32(4294967295.0));
  EXPECT_EQ(18446744073709549568u, truncate_to_uint64(18446744073709549568.0));
}

TEST(Truncation, EndsAtTheTargetsRange) {
  for (const double huge : {1e300, HUGE_VAL, 18446744073709551616.0}) {
    EXPECT_EQ(std::numeric_limits<int64_t>::max(), truncate_to_int64(huge));
    EXPECT_EQ(std::numeric_limits<int32_t>::max(), truncate_to_int32(huge));
    EXPECT_EQ(std::numeric_limits<uint32_t>::max(), truncate_to_uint32(huge));
    EXPECT_EQ(std::numeric_limits<int64_t>::min(), truncate_to_int64(-huge));
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), truncate_to_int32(-huge));
    EXPECT_EQ(0u, truncate_to_uint32(-huge));
    EXPECT_EQ(std::numeric_limits<uint64_t>::max(), truncate_to_uint64(huge));
    EXPECT_EQ(0u, truncate_to_uint64(-huge));
  }
  EXPECT_EQ(0, truncate_to_int64(NAN));
  EXPECT_EQ(0, truncate_to_int32(NAN));
  EXPECT_EQ(0u, truncate_to_uint32(NAN));
  EXPECT_EQ(0u, truncate_to_uint64(NAN));
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), truncate_to_int64(9223372036854775808.0));
}

TEST(CopyLine, EndsAtTheFirstLineFeed) {
  EXPECT_STREQ("abc", copy_line("abc\ndef").get());
  EXPECT_STREQ("abc", copy_line("abc").get());
  EXPECT_STREQ("a b\t", copy_line("a b\t\n").get());
}

TEST(CopyLine, GivesNoneForAnEmptyLine) {
  EXPECT_EQ(nullptr, copy_line("\nabc"));
  EXPECT_EQ(nullptr, copy_line(""));
}

TEST(CopyWord, EndsAtTheFirstBlank) {
  EXPECT_STREQ("1067", copy_word("1067 MHz").get());
  EXPECT_STREQ("", copy_word(" MHz").get());
  EXPECT_STREQ("10\t67", copy_word("10\t67 MHz").get());
}

TEST(CopyWord, TakesATextWithoutBlankWhole) {
  EXPECT_STREQ("1067MHz", copy_word("1067MHz").get());
  EXPECT_STREQ("", copy_word("").get());
}

std::string trimmed(std::string text, const char* set, unsigned flags) {
  trim(text.data(), set, flags);
  return text.c_str();
}

TEST(Trim, CutsTheEndsItIsToldTo) {
  EXPECT_EQ("abc", trimmed("  abc \t", " \t", kTrimBoth));
  EXPECT_EQ("abc \t", trimmed("  abc \t", " \t", kTrimStart));
  EXPECT_EQ("  abc", trimmed("  abc \t", " \t", kTrimEnd));
  EXPECT_EQ("  abc \t", trimmed("  abc \t", " \t", 0));
}

TEST(Trim, CutsTheSetsCharactersInAnyOrder) {
  EXPECT_EQ("abc", trimmed("\t \t abc\t \t ", " \t", kTrimBoth));
  EXPECT_EQ("a b", trimmed(")(a b)(", "()", kTrimBoth));
}

TEST(Trim, LeavesNothingOfATextMadeOfTheSet) {
  EXPECT_EQ("", trimmed(" \t ", " \t", kTrimBoth));
  EXPECT_EQ("", trimmed(" \t ", " \t", kTrimStart));
  EXPECT_EQ("", trimmed(" \t ", " \t", kTrimEnd));
  EXPECT_EQ("", trimmed("", " \t", kTrimBoth));
}

TEST(Trim, KeepsTheTextWhenTheSetIsEmpty) { EXPECT_EQ(" a ", trimmed(" a ", "", kTrimBoth)); }

}  // namespace
