// Numbers as files store them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace inv {

// An unsigned number made of all bytes, at most eight.
inline uint64_t read_number(std::string_view bytes, bool big_endian) {
  uint64_t number = 0;
  for (size_t i = 0; i < bytes.size(); ++i) {
    const size_t place = big_endian ? i : bytes.size() - 1 - i;
    number = number << 8 | static_cast<unsigned char>(bytes[place]);
  }
  return number;
}

// Parses decimal digits; std::nullopt for anything else and for numbers that do not fit into 64 bits.
inline std::optional<uint64_t> parse_decimal(std::string_view digits) {
  if (digits.empty() || digits.size() > 19) return std::nullopt;
  uint64_t number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + static_cast<uint64_t>(digit - '0');
  }
  return number;
}

// Whether `length` bytes from `offset` on are within `size` bytes.
inline bool fits(uint64_t offset, uint64_t length, uint64_t size) {
  return length <= size && offset <= size - length;
}

// Takes the text up to the next line feed off the front; std::nullopt if there is no line feed left.
inline std::optional<std::string_view> take_line(std::string_view& text) {
  const size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

}  // namespace inv
