// Strings: how they are kept, and what other parts of the stand-in need of them.
#pragma once

#include <CoreFoundation/CFString.h>

#include <string>
#include <string_view>

#include "platform/corefoundation/object.h"

constexpr uint32_t unknown_length = UINT32_MAX;

// The bytes stand behind the object, with a NUL after them; those of a mutable string in its own text.
struct CFStringObject : cf::Object {
  CFStringObject(uint32_t its_size, uint32_t its_length, bool is_mutable_string = false)
      : Object(cf::Kind::string), is_mutable(is_mutable_string), size(its_size), length(its_length) {}

  const bool is_mutable;
  const uint32_t size;      // in bytes; of no meaning in a mutable string
  mutable uint32_t length;  // in UTF-16 units, once somebody has asked
};

struct MutableString : CFStringObject {
  explicit MutableString(std::string_view its_text)
      : CFStringObject(0, unknown_length, true), text(its_text) {}

  std::string text;
};

namespace cf {

inline std::string_view text_of(CFStringRef string) {
  if (string->is_mutable) return static_cast<const MutableString*>(string)->text;
  return {tail_of<char>(string), string->size};
}

// A new string of valid UTF-8; none when it is too long to be counted.
CFStringRef create_string(std::string_view utf8, bool ascii);
// The same of any bytes: those that are not UTF-8 become U+FFFD.
CFStringRef create_repaired_string(std::string_view bytes);

// A place in a text between two characters.
struct Position {
  size_t offset = 0;  // in bytes
  CFIndex units = 0;  // in UTF-16 units
};
// The last place that is not behind so many UTF-16 units: never inside a character, nor behind the end.
Position position_at(CFStringRef string, CFIndex units);
CFIndex count_units(std::string_view utf8);

// How an object reads in a formatted string: strings as they are, numbers in decimal.
std::string description_of(CFTypeRef reference);

}  // namespace cf
