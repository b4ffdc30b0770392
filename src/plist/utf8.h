// UTF-8 as Unicode defines it: no overlong forms, no surrogates, nothing above U+10FFFF.
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
  size_t length;  // in bytes; of an invalid sequence, the bytes that one U+FFFD stands for
  bool valid;
};
Utf8Sequence first_sequence(std::string_view bytes);

// The code point may be anything up to U+10FFFF but a surrogate.
void append_utf8(std::string& text, uint32_t code_point);

// The bytes, with U+FFFD for each sequence that is not valid.
std::string repair_utf8(std::string_view bytes);

}  // namespace plist
