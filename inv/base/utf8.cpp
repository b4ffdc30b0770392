#include "inv/base/utf8.h"

#include <cstdint>

#include "plist/utf8.h"

namespace inv {
namespace {

// Calls visit(const plist::Utf8Sequence&, bytes) for each character, and for each sequence that is broken.
template <typename Visit>
void each_character(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const plist::Utf8Sequence character = plist::first_sequence(text);
    visit(character, text.substr(0, character.length));
    text.remove_prefix(character.length);
  }
}

struct CodeRange {
  uint32_t first;
  uint32_t last;
};

template <size_t count>
bool in_ranges(uint32_t code, const CodeRange (&ranges)[count]) {
  for (const CodeRange& range : ranges) {
    if (code >= range.first && code <= range.last) return true;
  }
  return false;
}

// Control characters; what has no width; marks and overrides of the writing direction; line and paragraph
// separators; marks of annotations; tags.
constexpr CodeRange kUnprintable[] = {{0x00, 0x1F},     {0x7F, 0x9F},      {0x061C, 0x061C}, {0x180E, 0x180E},
                                      {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F}, {0xFEFF, 0xFEFF},
                                      {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
constexpr CodeRange kNoColumn[] = {{0x300, 0x36F}, {0x200B, 0x200D}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};
constexpr CodeRange kTwoColumns[] = {{0x1100, 0x115F}, {0x2E80, 0xA4CF},   {0xAC00, 0xD7A3},
                                     {0xF900, 0xFAFF}, {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                                     {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};

size_t columns_of(uint32_t code) {
  if (in_ranges(code, kNoColumn)) return 0;
  return in_ranges(code, kTwoColumns) ? 2 : 1;
}

}  // namespace

bool is_utf8(std::string_view text) { return plist::classify_utf8(text) != plist::Utf8::invalid; }

std::string to_utf8(std::string_view text) { return plist::repair_utf8(text); }

std::string printable(std::string_view text) {
  std::string converted;
  each_character(text, [&](const plist::Utf8Sequence& character, std::string_view bytes) {
    if (character.code_point == '\r') {
      converted += "\xE2\x86\xB5";
    } else if (!character.valid || in_ranges(character.code_point, kUnprintable)) {
      converted += kReplacement;
    } else {
      converted += bytes;
    }
  });
  return converted;
}

std::string printable_lines(std::string_view text) {
  std::string lines;
  for (size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    const bool has_return = end > 0 && text[end - 1] == '\r';
    lines.append(printable(text.substr(0, end - (has_return ? 1 : 0)))).append("\n");
    text.remove_prefix(end + 1);
  }
  return lines.append(printable(text));
}

size_t columns(std::string_view text) {
  size_t count = 0;
  each_character(text, [&](const plist::Utf8Sequence& character, std::string_view) {
    count += columns_of(character.code_point);
  });
  return count;
}

std::string shorten(std::string_view text, size_t most_columns) {
  if (columns(text) <= most_columns) return std::string(text);
  std::string shortened;
  size_t used = 0;
  bool full = most_columns == 0;
  each_character(text, [&](const plist::Utf8Sequence& character, std::string_view bytes) {
    const size_t width = columns_of(character.code_point);
    full = full || used + width + 1 > most_columns;
    if (full) return;
    shortened += bytes;
    used += width;
  });
  return most_columns == 0 ? shortened : shortened + "\xE2\x80\xA6";
}

std::string shorten_beginning(std::string_view text, size_t most_columns) {
  if (columns(text) <= most_columns) return std::string(text);
  if (most_columns == 0) return "";
  while (columns(text) + 1 > most_columns) text.remove_prefix(plist::first_sequence(text).length);
  return "\xE2\x80\xA6" + std::string(text);
}

std::string pad_right(std::string text, size_t width) {
  const size_t used = columns(text);
  if (used < width) text.append(width - used, ' ');
  return text;
}

std::string pad_left(std::string text, size_t width) {
  const size_t used = columns(text);
  if (used < width) text.insert(0, width - used, ' ');
  return text;
}

}  // namespace inv
