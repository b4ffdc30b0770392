#include "inv/base/utf8.h"

#include <cstdint>

#include "plist/utf8.h"

namespace inv {
namespace {

// Calls visit(const plist::Utf8Sequence&, bytes) for each character and each broken sequence.
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

// Control characters; characters without a width; marks and overrides of the writing direction; line and
// paragraph separators; annotation marks; tags.
constexpr CodeRange kUnprintable[] = {{0x00, 0x1F},     {0x7F, 0x9F},      {0x061C, 0x061C}, {0x180E, 0x180E},
                                      {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F}, {0xFEFF, 0xFEFF},
                                      {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
// Marks that combine with the letter before them: a Mac's file system takes letters apart, Japanese and
// Korean ones too. Marks that are not among them count as a column, so a line may be shorter than it could
// be.
constexpr CodeRange kNoColumn[] = {
    {0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x5BF, 0x5BF},    {0x5C1, 0x5C2},
    {0x5C4, 0x5C5},   {0x5C7, 0x5C7},   {0x610, 0x61A},   {0x64B, 0x65F},    {0x670, 0x670},
    {0x6D6, 0x6DC},   {0x6DF, 0x6E4},   {0x6E7, 0x6E8},   {0x6EA, 0x6ED},    {0x900, 0x902},
    {0x93A, 0x93A},   {0x93C, 0x93C},   {0x941, 0x948},   {0x94D, 0x94D},    {0x951, 0x957},
    {0x962, 0x963},   {0xE31, 0xE31},   {0xE34, 0xE3A},   {0xE47, 0xE4E},    {0x1160, 0x11FF},
    {0x1AB0, 0x1ACE}, {0x1DC0, 0x1DFF}, {0x200B, 0x200D}, {0x20D0, 0x20F0},  {0x302A, 0x302D},
    {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xE0100, 0xE01EF}};
constexpr CodeRange kTwoColumns[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},
    {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},
    {0x2693, 0x2693},   {0x26A1, 0x26A1},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},
    {0x26CE, 0x26CE},   {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},
    {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},
    {0x27B0, 0x27B0},   {0x27BF, 0x27BF},   {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},
    {0x2E80, 0x303E},   {0x3040, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF},
    {0x1AFF0, 0x1B2FF}, {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A},
    {0x1F200, 0x1F320}, {0x1F32D, 0x1FAFF}, {0x20000, 0x3FFFD}};

size_t columns_of(uint32_t code) {
  if (code < kNoColumn[0].first) return 1;
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
  const auto first = [&] { return plist::first_sequence(text); };
  while (columns(text) + 1 > most_columns) text.remove_prefix(first().length);
  while (!text.empty() && columns_of(first().code_point) == 0) text.remove_prefix(first().length);
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
