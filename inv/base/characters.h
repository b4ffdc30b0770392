// Classifies ASCII characters and compares the ends of texts, regardless of the locale.
#pragma once

#include <string_view>

namespace inv {

constexpr bool is_upper(char character) { return character >= 'A' && character <= 'Z'; }
constexpr bool is_lower(char character) { return character >= 'a' && character <= 'z'; }
constexpr bool is_letter(char character) { return is_upper(character) || is_lower(character); }
constexpr bool is_digit(char character) { return character >= '0' && character <= '9'; }
constexpr bool is_letter_or_digit(char character) { return is_letter(character) || is_digit(character); }
constexpr bool is_control(char character) {
  return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
}
constexpr char lower_case(char character) {
  return is_upper(character) ? static_cast<char>(character - 'A' + 'a') : character;
}
constexpr bool is_hex_digit(char character) {
  return is_digit(character) || (lower_case(character) >= 'a' && lower_case(character) <= 'f');
}

constexpr bool starts_with(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}
constexpr bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace inv
