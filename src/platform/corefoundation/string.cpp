#include "platform/corefoundation/string.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/cf_ref.h"
#include "plist/utf8.h"

namespace cf {
namespace {

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }
bool starts_pair(char byte) { return static_cast<unsigned char>(byte) >= 0xF0; }

// The units of the character that starts with this byte.
CFIndex units_of(char first_byte) { return starts_pair(first_byte) ? 2 : 1; }

bool is_one_unit_per_byte(CFStringRef string) {
  return CFStringGetLength(string) == static_cast<CFIndex>(text_of(string).size());
}

// What a conversion wrote, and how much of the string it took.
struct Written {
  CFIndex units;
  CFIndex bytes;
};

// As many whole characters as there is room for.
Written write_utf8(CFStringRef string, Position from, Position to, UInt8* buffer, CFIndex capacity) {
  const std::string_view text = text_of(string);
  size_t size = to.offset - from.offset;
  CFIndex units = to.units - from.units;
  if (buffer && size > static_cast<size_t>(capacity)) {
    size = static_cast<size_t>(capacity);
    while (size > 0 && is_continuation(text[from.offset + size])) --size;
    units = count_units(text.substr(from.offset, size));
  }
  if (buffer && size > 0) std::memcpy(buffer, text.data() + from.offset, size);
  return {units, static_cast<CFIndex>(size)};
}

Written write_ascii(CFStringRef string, Position from, Position to, UInt8 loss_byte, UInt8* buffer,
                    CFIndex capacity) {
  const std::string_view text = text_of(string);
  Written written = {0, 0};
  for (size_t at = from.offset; at < to.offset && (!buffer || written.bytes < capacity); ++written.bytes) {
    const plist::Utf8Sequence character = plist::first_sequence(text.substr(at));
    const bool is_ascii = character.code_point < 0x80;
    if (!is_ascii && loss_byte == 0) break;
    if (buffer) buffer[written.bytes] = is_ascii ? static_cast<UInt8>(character.code_point) : loss_byte;
    written.units += units_of(text[at]);
    at += character.length;
  }
  return written;
}

// In the order of UTF-16 units, where the characters of two units come before U+E000.
int compare(std::string_view left, std::string_view right) {
  const size_t common = std::min(left.size(), right.size());
  const auto differing =
      std::mismatch(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(common), right.begin());
  if (differing.first == left.begin() + static_cast<std::ptrdiff_t>(common)) {
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
  }
  const auto rank = [](char byte) {
    const int value = static_cast<unsigned char>(byte);
    return value == 0xEE || value == 0xEF ? value + 0x10 : value;
  };
  return rank(*differing.first) < rank(*differing.second) ? -1 : 1;
}

// Constants are few, one for each CFSTR in the source, and end with the program.
class Constants {
 public:
  CFStringRef add(std::string_view text) {
    strings_.emplace_back(create_repaired_string(text));
    return strings_.back().get();
  }

 private:
  std::vector<CFRef<CFStringRef>> strings_;
};

}  // namespace

CFStringRef create_string(std::string_view utf8, bool ascii) {
  if (utf8.size() >= kUnknownLength) return nullptr;
  const uint32_t size = static_cast<uint32_t>(utf8.size());
  CFStringObject* const string =
      create_with_tail<CFStringObject>(size + size_t{1}, size, ascii ? size : kUnknownLength);
  char* const bytes = tail_of<char>(string);
  if (size > 0) std::memcpy(bytes, utf8.data(), size);
  bytes[size] = '\0';
  return string;
}

CFStringRef create_repaired_string(std::string_view bytes) {
  const plist::Utf8 kind = plist::classify_utf8(bytes);
  if (kind == plist::Utf8::invalid) return create_string(plist::repair_utf8(bytes), false);
  return create_string(bytes, kind == plist::Utf8::ascii);
}

CFIndex count_units(std::string_view utf8) {
  CFIndex units = 0;
  for (const char byte : utf8) {
    if (!is_continuation(byte)) units += units_of(byte);
  }
  return units;
}

Position position_at(CFStringRef string, CFIndex units) {
  const std::string_view text = text_of(string);
  if (units >= CFStringGetLength(string)) return {text.size(), CFStringGetLength(string)};
  if (is_one_unit_per_byte(string)) return {static_cast<size_t>(units), units};
  Position position;
  while (position.units + units_of(text[position.offset]) <= units) {
    position.units += units_of(text[position.offset]);
    position.offset += plist::first_sequence(text.substr(position.offset)).length;
  }
  return position;
}

}  // namespace cf

CFTypeID CFStringGetTypeID() { return static_cast<CFTypeID>(cf::Kind::string); }

CFStringRef CFStringMakeConstant(const char* text) {
  static cf::Constants constants;
  return constants.add(text);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding) {
  return CFStringCreateWithBytes(allocator, reinterpret_cast<const UInt8*>(text),
                                 static_cast<CFIndex>(std::strlen(text)), encoding, false);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<size_t>(length));
  const plist::Utf8 kind = plist::classify_utf8(text);
  const bool ascii = kind == plist::Utf8::ascii;
  const bool readable = ascii || (kind == plist::Utf8::valid && encoding == kCFStringEncodingUTF8);
  return readable ? cf::create_string(text, ascii) : nullptr;
}

CFIndex CFStringGetLength(CFStringRef string) {
  if (string->length == kUnknownLength)
    string->length = static_cast<uint32_t>(cf::count_units(cf::text_of(string)));
  return static_cast<CFIndex>(string->length);
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 loss_byte,
                         Boolean, UInt8* buffer, CFIndex buffer_length, CFIndex* used) {
  const cf::Position from = cf::position_at(string, range.location);
  const cf::Position to = cf::position_at(string, range.location + range.length);
  cf::Written written = {0, 0};
  if (encoding == kCFStringEncodingUTF8) written = cf::write_utf8(string, from, to, buffer, buffer_length);
  if (encoding == kCFStringEncodingASCII) {
    written = cf::write_ascii(string, from, to, loss_byte, buffer, buffer_length);
  }
  if (used) *used = written.bytes;
  return written.units;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex buffer_size, CFStringEncoding encoding) {
  if (buffer_size <= 0) return false;
  const CFIndex length = CFStringGetLength(string);
  CFIndex used = 0;
  const CFIndex converted = CFStringGetBytes(string, CFRangeMake(0, length), encoding, 0, false,
                                             reinterpret_cast<UInt8*>(buffer), buffer_size - 1, &used);
  buffer[used] = '\0';
  return converted == length;
}

const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding) {
  return encoding == kCFStringEncodingUTF8 ? cf::text_of(string).data() : nullptr;
}

CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFStringCompareFlags) {
  return static_cast<CFComparisonResult>(cf::compare(cf::text_of(left), cf::text_of(right)));
}
