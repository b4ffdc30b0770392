#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "contract/objects.h"
#include "contract/outcome.h"

namespace {

CFRef<CFPropertyListRef> parse_number(const std::string& element) { return parse_list(document(element)); }

std::optional<long long> integer_of(const std::string& text) {
  const CFRef<CFPropertyListRef> list = parse_number("<integer>" + text + "</integer>");
  if (!list) return std::nullopt;
  const CFNumberRef number = static_cast<CFNumberRef>(list.get());
  EXPECT_FALSE(CFNumberIsFloatType(number)) << text;
  long long value = 0;
  EXPECT_TRUE(CFNumberGetValue(number, kCFNumberSInt64Type, &value)) << text;
  return value;
}

std::optional<double> real_of(const std::string& text) {
  const CFRef<CFPropertyListRef> list = parse_number("<real>" + text + "</real>");
  if (!list) return std::nullopt;
  const CFNumberRef number = static_cast<CFNumberRef>(list.get());
  EXPECT_TRUE(CFNumberIsFloatType(number)) << text;
  EXPECT_EQ(CFNumberGetType(number), kCFNumberFloat64Type) << text;
  double value = 0;
  EXPECT_TRUE(CFNumberGetValue(number, kCFNumberFloat64Type, &value)) << text;
  return value;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(PropertyListIntegers, AreReadInTheseForms) {
  const std::pair<const char*, long long> forms[] = {
      {"5", 5},
      {"-5", -5},
      {"+5", 5},
      {"0", 0},
      {"-0", 0},
      {"007", 7},
      {"0x10", 16},
      {"0X10", 16},
      {"-0x10", -16},
      {"+0x10", 16},
      {" 5", 5},
      {"- 5", -5},
      {"2147483647", 2147483647},
      {"2147483648", 2147483648},
      {"-2147483649", -2147483649},
      {"9223372036854775807", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"0xaF", 0xAF},
  };
  for (const auto& [text, value] : forms) EXPECT_EQ(integer_of(text), value) << text;
}

TEST(PropertyListIntegers, AreWideExceptForZero) {
  const auto type_of = [](const std::string& text) {
    return CFNumberGetType(static_cast<CFNumberRef>(parse_number("<integer>" + text + "</integer>").get()));
  };
  for (const char* zero : {"0", "-0", "+0", "000", "0x0"})
    EXPECT_EQ(type_of(zero), kCFNumberSInt32Type) << zero;
  // Where numbers are not kept in their pointers, -1 to 12 are narrow too.
  for (const char* number :
       {"-1", "1", "12", "-2", "13", "0x10", "2147483647", "2147483648", "-2147483648", "9223372036854775807",
        "-9223372036854775808", "9223372036854775808", "18446744073709551615"})
    EXPECT_EQ(type_of(number), kCFNumberSInt64Type) << number;
}

TEST(PropertyListIntegers, FromTwoTo63AreHeldAndReadAsTheirBits) {
  expect_outcomes({
      {"<integer>9223372036854775808</integer>",
       "number isFloat=0 sint64=-9223372036854775808 double=9.2233720368547758e+18"},
      {"<integer>18446744073709551615</integer>",
       "number isFloat=0 sint64=-1 double=1.8446744073709552e+19(lossy)"},
      {"<integer>0xFFFFFFFFFFFFFFFF</integer>",
       "number isFloat=0 sint64=-1 double=1.8446744073709552e+19(lossy)"},
      {"<integer>0x8000000000000000</integer>",
       "number isFloat=0 sint64=-9223372036854775808 double=9.2233720368547758e+18"},
  });
}

TEST(PropertyListIntegers, AreRefusedInOtherForms) {
  for (const char* text : {"",
                           " ",
                           "0x",
                           "0xg",
                           "5 ",
                           "\n5\n",
                           "--5",
                           "5 6",
                           "5.0",
                           "5e3",
                           "1,000",
                           "abc",
                           "5abc",
                           "&#53;",
                           "-",
                           "+",
                           "+-5",
                           "- ",
                           "0x 5",
                           "\xD9\xA5",
                           "<![CDATA[5]]>",
                           "18446744073709551616",
                           "-9223372036854775809",
                           "0x10000000000000000"}) {
    EXPECT_EQ(integer_of(text), std::nullopt) << text;
  }
  expect_refused({"<integer/>"});
}

TEST(PropertyListReals, AreReadInTheseForms) {
  const std::pair<const char*, double> forms[] = {
      {"1.5", 1.5},
      {"-1.5", -1.5},
      {"+1.5", 1.5},
      {"0", 0},
      {"-0", -0.0},
      {"1", 1},
      {"100", 100},
      {"1e3", 1000},
      {"1E3", 1000},
      {"1e-3", 0.001},
      {"1e+3", 1000},
      {".5", 0.5},
      {"5.", 5},
      {"1e400", kInfinity},
      {"-1e400", -kInfinity},
      {"1e-400", 0},
      {"inf", kInfinity},
      {"INF", kInfinity},
      {"+inf", kInfinity},
      {"-inf", -kInfinity},
      {"infinity", kInfinity},
      {"Infinity", kInfinity},
      {"+infinity", kInfinity},
      {"-infinity", -kInfinity},
      {"0.1", 0.1},
      {"3.14159265358979", 3.14159265358979},
      {"1234567890123456789", 1234567890123456789.0},
      {"&#49;.5", 1.5},
  };
  for (const auto& [text, value] : forms) EXPECT_EQ(real_of(text), value) << text;
  EXPECT_TRUE(std::signbit(*real_of("-0")));
  for (const char* text : {"nan", "NaN", "NAN"}) EXPECT_TRUE(std::isnan(real_of(text).value_or(0))) << text;
}

TEST(PropertyListReals, AreRefusedInOtherForms) {
  for (const char* text : {"", "  ", " 1.5 ", "\n1.5\n", "1,5", "1.5.5", "1.5abc", "abc", "0x10", "0x1p4",
                           "1 2", ".", "e5", "1e", "1e+", "--1", "infinit", "infinityy"}) {
    EXPECT_EQ(real_of(text), std::nullopt) << text;
  }
  expect_refused({"<real/>"});
}

TEST(PropertyListReals, SayWhenTheyAreNotIntegers) {
  expect_outcomes({
      {"<real>1.5</real>", "number isFloat=1 sint64=1(lossy) double=1.5"},
      {"<real>-1.5</real>", "number isFloat=1 sint64=-1(lossy) double=-1.5"},
      {"<real>100</real>", "number isFloat=1 sint64=100 double=100"},
      {"<real>-0.0</real>", "number isFloat=1 sint64=0 double=-0"},
      {"<real>nan</real>", "number isFloat=1 sint64=-9223372036854775808(lossy) double=nan"},
      {"<real>inf</real>", "number isFloat=1 sint64=-9223372036854775808(lossy) double=inf"},
      {"<real>-1e400</real>", "number isFloat=1 sint64=-9223372036854775808(lossy) double=-inf"},
  });
}

TEST(PropertyListBooleans, HaveNoContent) {
  expect_outcomes(
      {{"<true/>", "true"}, {"<false/>", "false"}, {"<true></true>", "true"}, {"<false ></false>", "false"}});
  expect_refused({"<true>x</true>", "<true>"});
}

}  // namespace
