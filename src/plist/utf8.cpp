#include "plist/utf8.h"

#include <cstring>

namespace plist {
namespace {

// What may follow a lead byte: the number of continuation bytes and the range of the first of them, which is
// where overlong forms, surrogates and code points out of range show.
struct Lead {
  unsigned char continuations, low, high;
};

Lead lead_of(unsigned char byte) {
  if (byte < 0xC2 || byte > 0xF4) return {0, 0, 0};
  if (byte < 0xE0) return {1, 0x80, 0xBF};
  if (byte < 0xF0) {
    return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
  }
  return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
          static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
}

constexpr uint64_t kHighBits = 0x8080808080808080u;

size_t ascii_prefix(std::string_view bytes) {
  size_t at = 0;
  for (uint64_t word; bytes.size() - at >= sizeof word; at += sizeof word) {
    std::memcpy(&word, bytes.data() + at, sizeof word);
    if (word & kHighBits) break;
  }
  while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80) ++at;
  return at;
}

}  // namespace

Utf8Sequence first_sequence(std::string_view bytes) {
  const auto byte_at = [bytes](size_t index) { return static_cast<unsigned char>(bytes[index]); };
  const unsigned char first = byte_at(0);
  if (first < 0x80) return {first, 1, true};
  const Lead lead = lead_of(first);
  if (lead.continuations == 0) return {0xFFFD, 1, false};
  uint32_t code_point = first & (0x3Fu >> lead.continuations);
  for (size_t i = 1; i <= lead.continuations; ++i) {
    const unsigned char low = i == 1 ? lead.low : 0x80, high = i == 1 ? lead.high : 0xBF;
    if (i >= bytes.size() || byte_at(i) < low || byte_at(i) > high) return {0xFFFD, i, false};
    code_point = code_point << 6 | (byte_at(i) & 0x3Fu);
  }
  return {code_point, lead.continuations + size_t{1}, true};
}

Utf8 classify_utf8(std::string_view bytes) {
  size_t at = ascii_prefix(bytes);
  if (at == bytes.size()) return Utf8::ascii;
  while (at < bytes.size()) {
    const Utf8Sequence sequence = first_sequence(bytes.substr(at));
    if (!sequence.valid) return Utf8::invalid;
    at += sequence.length;
    at += ascii_prefix(bytes.substr(at));
  }
  return Utf8::valid;
}

void append_utf8(std::string& text, uint32_t code_point) {
  const auto add = [&text](uint32_t byte) { text.push_back(static_cast<char>(byte)); };
  const auto add_continuation = [&](unsigned shift) { add(0x80 | (code_point >> shift & 0x3F)); };
  if (code_point < 0x80) {
    add(code_point);
  } else if (code_point < 0x800) {
    add(0xC0 | code_point >> 6);
    add_continuation(0);
  } else if (code_point < 0x10000) {
    add(0xE0 | code_point >> 12);
    add_continuation(6);
    add_continuation(0);
  } else {
    add(0xF0 | code_point >> 18);
    add_continuation(12);
    add_continuation(6);
    add_continuation(0);
  }
}

std::string repair_utf8(std::string_view bytes) {
  std::string repaired;
  while (!bytes.empty()) {
    const Utf8Sequence sequence = first_sequence(bytes);
    append_utf8(repaired, sequence.code_point);
    bytes.remove_prefix(sequence.length);
  }
  return repaired;
}

}  // namespace plist
