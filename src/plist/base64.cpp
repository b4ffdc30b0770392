#include "plist/base64.h"

#include <cstdint>

namespace plist {
namespace {

constexpr uint32_t kNotInAlphabet = 64;

uint32_t value_of(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<uint32_t>(c - 'A');
  if (c >= 'a' && c <= 'z') return static_cast<uint32_t>(c - 'a' + 26);
  if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0' + 52);
  if (c == '+') return 62;
  if (c == '/') return 63;
  return c == '=' ? 0 : kNotInAlphabet;
}

bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

size_t decode_base64(std::string_view base64, unsigned char* bytes) {
  unsigned char* out = bytes;
  uint32_t group = 0;
  unsigned characters = 0, padding = 0;
  for (const char c : base64) {
    if (c == '=') {
      ++padding;
    } else if (!is_blank(c)) {
      padding = 0;
    }
    const uint32_t value = value_of(c);
    if (value == kNotInAlphabet) continue;
    group = group << 6 | value;
    if (++characters % 4 != 0) continue;
    *out++ = static_cast<unsigned char>(group >> 16);
    if (padding < 2) *out++ = static_cast<unsigned char>(group >> 8);
    if (padding < 1) *out++ = static_cast<unsigned char>(group);
  }
  return static_cast<size_t>(out - bytes);
}

}  // namespace plist
