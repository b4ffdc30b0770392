// Strings: how they are stored, and what other parts of the stand-in need from them.
#pragma once

#include <CoreFoundation/CFString.h>

#include <string_view>

#include "platform/corefoundation/object.h"

constexpr uint32_t kUnknownLength = UINT32_MAX;

// The bytes follow the object, with a NUL after them.
struct CFStringObject : cf::Object {
  CFStringObject(uint32_t its_size, uint32_t its_length)
      : Object(cf::Kind::string), size(its_size), length(its_length) {}

  const uint32_t size;      // in bytes
  mutable uint32_t length;  // in UTF-16 units, once it has been counted
};

namespace cf {

inline std::string_view text_of(CFStringRef string) { return {tail_of<char>(string), string->size}; }

// A new string of valid UTF-8; null when it is too long to be counted.
CFStringRef create_string(std::string_view utf8, bool ascii);
// The same of any bytes: those that are not UTF-8 become U+FFFD.
CFStringRef create_repaired_string(std::string_view bytes);

// A place in a text between two characters.
struct Position {
  size_t offset = 0;  // in bytes
  CFIndex units = 0;  // in UTF-16 units
};
// The last place that is at most this many UTF-16 units in: never inside a character, nor beyond the end.
Position position_at(CFStringRef string, CFIndex units);
CFIndex count_units(std::string_view utf8);

}  // namespace cf
