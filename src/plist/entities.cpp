#include "plist/entities.h"

#include "plist/cursor.h"
#include "plist/utf8.h"

namespace plist {
namespace {

struct NamedEntity {
  std::string_view text;
  char character;
};
constexpr NamedEntity kNamedEntities[] = {
    {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'},
};

constexpr uint32_t kLastCodePoint = 0x10FFFF;

bool is_surrogate(uint32_t code_point) { return code_point >= 0xD800 && code_point <= 0xDFFF; }

}  // namespace

std::optional<Entity> parse_entity(std::string_view text) {
  for (const NamedEntity& named : kNamedEntities) {
    if (text.substr(0, named.text.size()) == named.text) {
      return Entity{static_cast<unsigned char>(named.character), named.text.size()};
    }
  }

  Cursor cursor(text);
  if (!cursor.skip("&#")) return std::nullopt;
  const uint32_t base = cursor.skip('x') ? 16 : 10;
  uint32_t code_point = 0;
  for (; !cursor.at_end() && *cursor.at != ';'; ++cursor.at) {
    const unsigned digit = digit_value(*cursor.at);
    if (digit >= base) return std::nullopt;
    code_point = code_point * base + digit;
    if (code_point > kLastCodePoint) return std::nullopt;
  }
  if (!cursor.skip(';') || is_surrogate(code_point)) return std::nullopt;
  return Entity{code_point, static_cast<size_t>(cursor.at - text.data())};
}

bool append_resolved(std::string& resolved, std::string_view text) {
  bool all_known = true;
  for (Cursor cursor(text);;) {
    resolved += cursor.take(cursor.find('&'));
    if (cursor.at_end()) return all_known;
    if (const std::optional<Entity> entity = parse_entity(cursor.rest())) {
      append_utf8(resolved, entity->code_point);
      cursor.at += entity->length;
    } else {
      resolved += *cursor.at++;
      all_known = false;
    }
  }
}

}  // namespace plist
