// UTF-8 as Unicode defines it: no overlong forms, no surrogates, nothing above U+10FFFF. A broken sequence is
// the longest start of a character that is cut off, else a single byte; web browsers replace the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace plist {

enum class Utf8 { ascii, valid, invalid };

Utf8 classify_utf8(std::string_view bytes);

// The code point that starts at the first byte of a text that is not empty.
struct Utf8Sequence {
  uint32_t code_point;
  size_t length;  // in bytes; of a broken sequence, the bytes that one U+FFFD replaces
  bool valid;
};
Utf8Sequence first_sequence(std::string_view bytes);

// The code point may be anything up to U+10FFFF but a surrogate.
void append_utf8(std::string& text, uint32_t code_point);

// The bytes, with one U+FFFD for each broken sequence.
std::string repair_utf8(std::string_view bytes);

}  // namespace plist
