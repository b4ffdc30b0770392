#include "plist/numbers.h"

#include <cstdlib>
#include <limits>
#include <string>

#include "plist/cursor.h"

namespace plist {
namespace {

constexpr uint64_t kLowestMagnitude = uint64_t{1} << 63;  // of -2^63

std::optional<uint64_t> parse_digits(std::string_view text, unsigned base) {
  if (text.empty()) return std::nullopt;
  uint64_t value = 0;
  for (const char c : text) {
    const unsigned digit = digit_value(c);
    if (digit >= base || value > (UINT64_MAX - digit) / base) return std::nullopt;
    value = value * base + digit;
  }
  return value;
}

void skip_digits(Cursor& cursor) {
  while (!cursor.at_end() && is_digit(*cursor.at)) ++cursor.at;
}

bool skip_sign(Cursor& cursor) { return cursor.skip('+') || cursor.skip('-'); }

bool is_decimal(std::string_view text) {
  Cursor cursor(text);
  skip_sign(cursor);
  const char* const whole = cursor.at;
  skip_digits(cursor);
  auto digits = cursor.at - whole;
  if (cursor.skip('.')) {
    const char* const fraction = cursor.at;
    skip_digits(cursor);
    digits += cursor.at - fraction;
  }
  if (digits == 0) return false;
  if (cursor.skip('e') || cursor.skip('E')) {
    skip_sign(cursor);
    if (cursor.at_end()) return false;
    skip_digits(cursor);
  }
  return cursor.at_end();
}

struct SpecialReal {
  std::string_view name;
  double value;
};
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr SpecialReal kSpecialReals[] = {
    {"nan", std::numeric_limits<double>::quiet_NaN()},
    {"inf", kInfinity},
    {"+inf", kInfinity},
    {"-inf", -kInfinity},
    {"infinity", kInfinity},
    {"+infinity", kInfinity},
    {"-infinity", -kInfinity},
};

std::optional<double> parse_special_real(std::string_view text) {
  std::string lower(text.substr(0, sizeof "-infinity"));
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
  }
  for (const SpecialReal& special : kSpecialReals) {
    if (special.name == lower) return special.value;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Integer> parse_integer(std::string_view text) {
  Cursor cursor(text);
  cursor.skip_white();
  const bool negative = cursor.sees('-');
  skip_sign(cursor);
  cursor.skip_white();
  const bool hexadecimal = cursor.skip("0x") || cursor.skip("0X");
  const std::optional<uint64_t> magnitude = parse_digits(cursor.rest(), hexadecimal ? 16 : 10);
  if (!magnitude || (negative && *magnitude > kLowestMagnitude)) return std::nullopt;
  const uint64_t bits = negative ? uint64_t{0} - *magnitude : *magnitude;
  return Integer{static_cast<int64_t>(bits), !negative && bits >= kLowestMagnitude};
}

std::optional<double> parse_real(std::string_view text) {
  if (!is_decimal(text)) return parse_special_real(text);
  return std::strtod(std::string(text).c_str(), nullptr);
}

}  // namespace plist
