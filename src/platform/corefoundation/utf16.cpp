#include "platform/corefoundation/utf16.h"

#include "plist/utf8.h"

namespace cf {

std::u16string to_utf16(std::string_view utf8) {
  std::u16string units;
  while (!utf8.empty()) {
    const plist::Utf8Sequence character = plist::first_sequence(utf8);
    if (character.code_point < 0x10000) {
      units.push_back(static_cast<char16_t>(character.code_point));
    } else {
      units.push_back(static_cast<char16_t>(0xD7C0 + (character.code_point >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 + (character.code_point & 0x3FF)));
    }
    utf8.remove_prefix(character.length);
  }
  return units;
}

std::string to_utf8(std::u16string_view utf16) {
  std::string text;
  for (size_t i = 0; i < utf16.size(); ++i) {
    const uint32_t unit = utf16[i], next = i + 1 < utf16.size() ? utf16[i + 1] : 0;
    if (is_high_surrogate(unit) && is_low_surrogate(next)) {
      plist::append_utf8(text, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++i;
    } else {
      plist::append_utf8(text, is_high_surrogate(unit) || is_low_surrogate(unit) ? 0xFFFD : unit);
    }
  }
  return text;
}

}  // namespace cf
