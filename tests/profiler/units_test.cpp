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

TEST(SizeConversion, ReadsNoneAsZero) {
  for (const Conversion conversion : {size_to_gb, size_to_gb_binary, size_to_mb, size_to_kb})
    EXPECT_EQ(conversion(nullptr), 0);
  EXPECT_EQ(size_to_bytes(nullptr), 0);
  EXPECT_EQ(size_to_decimal_gb(nullptr, false), 0);
}

TEST(SizeConversion, ReplacesCommasInTheCallersText) {
  std::string size = "1,5 GB";
  EXPECT_EQ(size_to_mb(size.data()), 1536.0);
  EXPECT_EQ(size, "1.5 GB");
}

TEST(SizeConversion, ReplacesCommasEvenInWhatIsNotASize) {
  for (const auto& [text, after] :
       {std::pair("a,b,c", "a.b.c"), std::pair(",", "."), std::pair("1,5 kB", "1.5 kB")}) {
    std::string size = text;
    EXPECT_EQ(size_to_gb(size.data()), 0);
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

TEST(SizeToBytes, CountsBinaryBytesExceptForTheThousandInATb) {
  EXPECT_EQ(bytes("1 KB"), 1024);
  EXPECT_EQ(bytes("1 GB"), 1073741824);
  EXPECT_EQ(bytes("1,5 GB"), 1610612736);
  EXPECT_EQ(bytes("1 TB"), 1073741824000);
}

TEST(SizeToBytes, CutsFractionsOffTowardsZero) {
  EXPECT_EQ(bytes("0.00185 KB"), 1);
  EXPECT_EQ(bytes("-0.00185 KB"), -1);
}

TEST(SizeToBytes, StaysInItsRangeWhateverTheText) {
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), bytes("inf GB"));
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), bytes("1e40 TB"));
  EXPECT_EQ(std::numeric_limits<int64_t>::min(), bytes("-1e30 GB"));
  EXPECT_EQ(bytes("nan GB"), 0);
  EXPECT_EQ(bytes("GB"), 0);
}

double decimal_gb(std::string size, bool round) { return size_to_decimal_gb(size.data(), round); }

TEST(SizeToDecimalGb, CountsAsDiskMakersDo) {
  EXPECT_NEAR(536.989, decimal_gb("500.11 GB", false), 0.001);
  EXPECT_EQ(decimal_gb("500.11 GB", true), 537);
  // A TB is a thousand binary GB here as well.
  EXPECT_NEAR(1073.742, decimal_gb("1 TB", false), 0.001);
}

TEST(SizeToDecimalGb, RoundsUpAboveFourTenths) {
  EXPECT_EQ(decimal_gb("216.34 GB", true), 232);  // 232.29
  EXPECT_EQ(decimal_gb("216.43 GB", true), 232);  // 232.39
  EXPECT_EQ(decimal_gb("216.45 GB", true), 233);  // 232.41
  EXPECT_EQ(decimal_gb("216.63 GB", true), 233);  // 232.60
}

TEST(SizeToDecimalGb, KeepsTheRoundedNumberInThirtyTwoBits) {
  EXPECT_EQ(std::numeric_limits<int32_t>::max(), decimal_gb("inf GB", true));
  EXPECT_EQ(std::numeric_limits<int32_t>::max(), decimal_gb("1e40 TB", true));
  EXPECT_EQ(std::numeric_limits<int32_t>::min(), decimal_gb("-1e30 GB", true));
  EXPECT_EQ(decimal_gb("nan GB", true), 0);
  EXPECT_EQ(decimal_gb("GB", true), 0);
}

TEST(BytesToDecimalGb, DividesByTenToTheNinth) {
  EXPECT_EQ(bytes_to_decimal_gb(0), 0);
  EXPECT_DOUBLE_EQ(bytes_to_decimal_gb(1000000000), 1);
  EXPECT_DOUBLE_EQ(bytes_to_decimal_gb(500107862016), 500.107862016);
  EXPECT_DOUBLE_EQ(bytes_to_decimal_gb(std::numeric_limits<uint64_t>::max()), 18446744073.709552);
}

TEST(SpeedToMhz, MultipliesInSinglePrecision) {
  EXPECT_EQ(speed_to_mhz("2.4 GHz"), 2400);
  // In double precision the product is a little less than 1001, which would be cut down to 1000.
  EXPECT_EQ(truncate_to_int64(speed_to_mhz("1.001 GHz")), 1001);
  EXPECT_EQ(speed_to_mhz("2.93"), 2930);
}

TEST(SpeedToMhz, DoesNotLookAtTheUnit) { EXPECT_EQ(speed_to_mhz("800 MHz"), 800000); }

TEST(SpeedToMhz, ReadsNoDecimalComma) { EXPECT_EQ(speed_to_mhz("2,4 GHz"), 2000); }

TEST(SpeedToMhz, GivesZeroForNoNumber) {
  EXPECT_EQ(speed_to_mhz(""), 0);
  EXPECT_EQ(speed_to_mhz("fast"), 0);
}

TEST(Truncation, DropsTheFraction) {
  EXPECT_EQ(truncate_to_int64(2.99), 2);
  EXPECT_EQ(truncate_to_int64(-2.99), -2);
  EXPECT_EQ(truncate_to_int32(2.99), 2);
  EXPECT_EQ(truncate_to_uint32(2.99), 2u);
  EXPECT_EQ(truncate_to_uint64(2.99), 2u);
}

TEST(Truncation, KeepsTheLargestNumbersThatFit) {
  EXPECT_EQ(truncate_to_int64(9223372036854774784.0), 9223372036854774784);
  EXPECT_EQ(truncate_to_int32(2147483647.0), 2147483647);
  EXPECT_EQ(truncate_to_int32(-2147483648.0), -2147483648);
  EXPECT_EQ(truncate_to_uint32(2147483648.0), 2147483648u);
  EXPECT_EQ(truncate_to_uint32(4294967295.0), 4294967295u);
  EXPECT_EQ(truncate_to_uint64(18446744073709549568.0), 18446744073709549568u);
}

TEST(Truncation, EndsAtTheTargetsRange) {
  for (const double huge : {1e300, HUGE_VAL, 18446744073709551616.0}) {
    EXPECT_EQ(std::numeric_limits<int64_t>::max(), truncate_to_int64(huge));
    EXPECT_EQ(std::numeric_limits<int32_t>::max(), truncate_to_int32(huge));
    EXPECT_EQ(std::numeric_limits<uint32_t>::max(), truncate_to_uint32(huge));
    EXPECT_EQ(std::numeric_limits<int64_t>::min(), truncate_to_int64(-huge));
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), truncate_to_int32(-huge));
    EXPECT_EQ(truncate_to_uint32(-huge), 0u);
    EXPECT_EQ(std::numeric_limits<uint64_t>::max(), truncate_to_uint64(huge));
    EXPECT_EQ(truncate_to_uint64(-huge), 0u);
  }
  EXPECT_EQ(truncate_to_int64(NAN), 0);
  EXPECT_EQ(truncate_to_int32(NAN), 0);
  EXPECT_EQ(truncate_to_uint32(NAN), 0u);
  EXPECT_EQ(truncate_to_uint64(NAN), 0u);
  EXPECT_EQ(std::numeric_limits<int64_t>::max(), truncate_to_int64(9223372036854775808.0));
}

TEST(CopyLine, EndsAtTheFirstLineFeed) {
  EXPECT_STREQ(copy_line("abc\ndef").get(), "abc");
  EXPECT_STREQ(copy_line("abc").get(), "abc");
  EXPECT_STREQ(copy_line("a b\t\n").get(), "a b\t");
}

TEST(CopyLine, ReturnsNoneForAnEmptyLine) {
  EXPECT_EQ(copy_line("\nabc"), nullptr);
  EXPECT_EQ(copy_line(""), nullptr);
}

TEST(CopyWord, EndsAtTheFirstBlank) {
  EXPECT_STREQ(copy_word("1067 MHz").get(), "1067");
  EXPECT_STREQ(copy_word(" MHz").get(), "");
  EXPECT_STREQ(copy_word("10\t67 MHz").get(), "10\t67");
}

TEST(CopyWord, TakesATextWithoutBlankWhole) {
  EXPECT_STREQ(copy_word("1067MHz").get(), "1067MHz");
  EXPECT_STREQ(copy_word("").get(), "");
}

std::string trimmed(std::string text, const char* set, unsigned flags) {
  trim(text.data(), set, flags);
  return text.c_str();
}

TEST(Trim, TrimsTheRequestedEnds) {
  EXPECT_EQ(trimmed("  abc \t", " \t", kTrimBoth), "abc");
  EXPECT_EQ(trimmed("  abc \t", " \t", kTrimStart), "abc \t");
  EXPECT_EQ(trimmed("  abc \t", " \t", kTrimEnd), "  abc");
  EXPECT_EQ(trimmed("  abc \t", " \t", 0), "  abc \t");
}

TEST(Trim, CutsTheSetsCharactersInAnyOrder) {
  EXPECT_EQ(trimmed("\t \t abc\t \t ", " \t", kTrimBoth), "abc");
  EXPECT_EQ(trimmed(")(a b)(", "()", kTrimBoth), "a b");
}

TEST(Trim, LeavesNothingOfATextMadeOfTheSet) {
  EXPECT_EQ(trimmed(" \t ", " \t", kTrimBoth), "");
  EXPECT_EQ(trimmed(" \t ", " \t", kTrimStart), "");
  EXPECT_EQ(trimmed(" \t ", " \t", kTrimEnd), "");
  EXPECT_EQ(trimmed("", " \t", kTrimBoth), "");
}

TEST(Trim, KeepsTheTextWhenTheSetIsEmpty) { EXPECT_EQ(trimmed(" a ", "", kTrimBoth), " a "); }

}  // namespace
