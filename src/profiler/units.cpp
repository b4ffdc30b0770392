#include "profiler/units.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

struct Unit {
  char name[3];
  float factor;
};

using Units = Unit[4];

constexpr Units kGb = {{"KB", 1.0f / 1048576}, {"MB", 1.0f / 1024}, {"GB", 1}, {"TB", 1000}};
constexpr Units kGbBinary = {{"KB", 1.0f / 1048576}, {"MB", 1.0f / 1024}, {"GB", 1}, {"TB", 1024}};
constexpr Units kMb = {{"KB", 1.0f / 1024}, {"MB", 1}, {"GB", 1024}, {"TB", 1048576}};
constexpr Units kKb = {{"KB", 1}, {"MB", 1024}, {"GB", 1048576}, {"TB", 1073741824}};

double parse_size(char* size, const Units& units) {
  if (!size) return 0;
  const size_t length = std::strlen(size);
  std::replace(size, size + length, ',', '.');
  if (length < 3) return 0;
  for (const Unit& unit : units) {
    if (std::strcmp(size + length - 2, unit.name) != 0) continue;
    const Text number = copy_range(size, size + length - 3);
    float value = 0;
    if (std::sscanf(number.get(), "%f", &value) != 1) return 0;
    return static_cast<double>(value * unit.factor);
  }
  return 0;
}

template <typename Integer>
Integer truncate(double number) {
  // The range's ends as doubles; the upper one, 2^n, is the first number that does not fit.
  constexpr double kLowest = static_cast<double>(std::numeric_limits<Integer>::min());
  const double beyond = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
  if (std::isnan(number)) return 0;
  if (number <= kLowest) return std::numeric_limits<Integer>::min();
  if (number >= beyond) return std::numeric_limits<Integer>::max();
  return static_cast<Integer>(number);
}

bool in_set(char character, const char* set) { return character != '\0' && std::strchr(set, character); }

}  // namespace

double size_to_gb(char* size) { return parse_size(size, kGb); }
double size_to_gb_binary(char* size) { return parse_size(size, kGbBinary); }
double size_to_mb(char* size) { return parse_size(size, kMb); }
double size_to_kb(char* size) { return parse_size(size, kKb); }
int64_t size_to_bytes(char* size) { return truncate_to_int64(size_to_gb(size) * kBytesPerGb); }

double size_to_decimal_gb(char* size, bool round) {
  const long double bytes = static_cast<long double>(size_to_gb(size)) * kBytesPerGb;
  double decimal = static_cast<double>(bytes / 1000 / 10000000 * 10);
  if (!round) return decimal;
  if (std::fmod(decimal, 1.0) > 0.4) decimal += 1.0;
  return truncate_to_int32(decimal);
}

double bytes_to_decimal_gb(uint64_t bytes) { return static_cast<double>(bytes) / 1000 / 10000000 * 10; }

double speed_to_mhz(const char* speed) { return static_cast<float>(std::atof(speed)) * 1000.0f; }

int64_t truncate_to_int64(double number) { return truncate<int64_t>(number); }
int32_t truncate_to_int32(double number) { return truncate<int32_t>(number); }
uint32_t truncate_to_uint32(double number) { return truncate<uint32_t>(number); }
uint64_t truncate_to_uint64(double number) { return truncate<uint64_t>(number); }

Text copy_line(const char* text) {
  const size_t length = std::strcspn(text, "\n");
  return length > 0 ? copy_range(text, text + length) : nullptr;
}

Text copy_word(const char* text) { return copy_range(text, text + std::strcspn(text, " ")); }

void trim(char* text, const char* set, unsigned flags) {
  size_t length = std::strlen(text);
  if (flags & kTrimEnd) {
    while (length > 0 && in_set(text[length - 1], set)) --length;
    text[length] = '\0';
  }
  if (flags & kTrimStart) {
    size_t start = 0;
    while (in_set(text[start], set)) ++start;
    std::memmove(text, text + start, length - start + 1);
  }
}
