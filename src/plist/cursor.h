// A place in the input. Every step is checked against the end: nothing beyond the last byte is ever read.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace plist {

inline bool is_white(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Of a decimal or hexadecimal digit; 16 for any other character.
inline unsigned digit_value(char c) {
  if (is_digit(c)) return static_cast<unsigned>(c - '0');
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 16;
}

struct Cursor {
  const char* at;
  const char* end;

  explicit Cursor(std::string_view text) : at(text.data()), end(text.data() + text.size()) {}

  bool at_end() const { return at == end; }
  bool sees(char c) const { return at != end && *at == c; }
  std::string_view rest() const { return {at, static_cast<size_t>(end - at)}; }
  bool sees(std::string_view text) const { return rest().substr(0, text.size()) == text; }

  bool skip(char c) {
    if (!sees(c)) return false;
    ++at;
    return true;
  }
  bool skip(std::string_view text) {
    if (!sees(text)) return false;
    at += text.size();
    return true;
  }
  void skip_white() {
    while (at != end && is_white(*at)) ++at;
  }

  // The place of the next such character; the end when there is none.
  const char* find(char c) const {
    const void* found = at == end ? nullptr : std::memchr(at, c, static_cast<size_t>(end - at));
    return found ? static_cast<const char*>(found) : end;
  }
  // Moves past the next such text; returns false and stays when there is none.
  bool skip_past(std::string_view text) {
    const size_t offset = rest().find(text);
    if (offset == std::string_view::npos) return false;
    at += offset + text.size();
    return true;
  }
  // Moves forward to a place and returns the text in between.
  std::string_view take(const char* until) {
    const std::string_view taken(at, static_cast<size_t>(until - at));
    at = until;
    return taken;
  }
};

}  // namespace plist
