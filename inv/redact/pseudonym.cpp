#include "inv/redact/pseudonym.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstdio>

#include "inv/base/characters.h"
#include "inv/base/sha256.h"
#include "inv/redact/token_finder.h"

namespace inv {
namespace {

// FireWire addresses have eight octets.
constexpr std::string_view kMacForms[] = {"XX-XX-XX-XX-XX-XX", "XX:XX:XX:XX:XX:XX", "XX-XX-XX-XX-XX-XX-XX-XX",
                                          "XX:XX:XX:XX:XX:XX:XX:XX"};
constexpr std::string_view kUuidForm = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
constexpr size_t kMakerDigits = 6;  // the maker's part of a MAC address
constexpr size_t kUuidVersionDigit = 12;
constexpr size_t kUuidVariantDigit = 16;
// Shorter serial numbers have too few possible pseudonyms of the same form.
constexpr size_t kShortestSerial = 4;
constexpr size_t kNameLength = 10;

bool has_form(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char character, char wanted) {
    return wanted == 'X' ? is_hex_digit(character) : character == wanted;
  });
}

bool is_mac(std::string_view text) {
  return std::any_of(std::begin(kMacForms), std::end(kMacForms),
                     [text](std::string_view form) { return has_form(text, form); });
}

bool is_ip_address(int family, std::string_view text) {
  unsigned char address[sizeof(in6_addr)];
  return inet_pton(family, std::string(text).c_str(), address) == 1;
}

Shape serial_shape(std::string_view text) {
  const auto letters = std::count_if(text.begin(), text.end(), is_letter_or_digit);
  return static_cast<size_t>(letters) < kShortestSerial ? Shape::name : Shape::serial;
}

// Puts hexadecimal digits into the form.
std::string filled(std::string_view form, std::string_view digits) {
  std::string text(form);
  for (char& character : text) {
    if (character != 'X') continue;
    character = digits.front();
    digits.remove_prefix(1);
  }
  return text;
}

bool is_in_capitals(std::string_view text) {
  return std::any_of(text.begin(), text.end(), is_upper) && std::none_of(text.begin(), text.end(), is_lower);
}

// Pseudo-random numbers, always the same for the same key and original.
class Numbers {
 public:
  Numbers(std::string_view key, std::string_view canonical, unsigned attempt)
      : seed_(hmac_sha256(key, std::to_string(attempt).append(":").append(canonical))) {}

  unsigned below(unsigned limit) {
    uint32_t number = 0;
    for (int i = 0; i < 4; ++i) number = number << 8 | next_byte();
    return number % limit;
  }
  char one_of(std::string_view characters) {
    return characters[below(static_cast<unsigned>(characters.size()))];
  }

 private:
  uint8_t next_byte() {
    if (used_ == digest_.size()) {
      digest_ =
          hmac_sha256({reinterpret_cast<const char*>(seed_.data()), seed_.size()}, std::to_string(block_++));
      used_ = 0;
    }
    return digest_[used_++];
  }

  Digest seed_;
  unsigned block_ = 0;
  Digest digest_ = {};
  size_t used_ = digest_.size();
};

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kSmallLetters = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kCapitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::string make_name(Numbers& numbers, std::string_view occurrence) {
  const bool capitals = is_in_capitals(occurrence);
  std::string name = capitals ? "ANON" : "anon";
  for (size_t i = 0; i < kNameLength; ++i) {
    name +=
        numbers.one_of(capitals ? "0123456789ABCDEFGHJKMNPQRSTVWXYZ" : "0123456789abcdefghjkmnpqrstvwxyz");
  }
  return name;
}

std::string make_number(Numbers& numbers) {
  constexpr unsigned kCount = 1000000000;
  return std::to_string(kCount + numbers.below(kCount));
}

std::string make_serial(Numbers& numbers, std::string_view occurrence) {
  std::string serial(occurrence);
  for (char& character : serial) {
    if (is_digit(character))
      character = numbers.one_of(kDigits);
    else if (is_lower(character))
      character = numbers.one_of(kSmallLetters);
    else if (is_upper(character))
      character = numbers.one_of(kCapitals);
  }
  return serial;
}

std::string make_ipv4(Numbers& numbers) {
  std::string address = "10";
  for (int i = 0; i < 2; ++i) address += "." + std::to_string(numbers.below(256));
  return address + "." + std::to_string(1 + numbers.below(254));
}

std::string make_ipv6(Numbers& numbers) {
  char group[5];
  std::string address;
  for (unsigned i = 0; i < 8; ++i) {
    // The block reserved for private use.
    const unsigned number = i == 0 ? 0xFD00 + numbers.below(0x100) : numbers.below(0x10000);
    std::snprintf(group, sizeof group, "%04x", number);
    address += (i == 0 ? "" : ":") + std::string(group);
  }
  return address;
}

// The hexadecimal digit at this place, before its case is set.
char make_hex_digit(Numbers& numbers, Shape shape, size_t place, char original) {
  const char digit = numbers.one_of("0123456789abcdef");
  if (shape == Shape::mac) return place < kMakerDigits ? original : digit;
  if (place == kUuidVersionDigit) return '4';
  if (place == kUuidVariantDigit) return "89ab"[static_cast<size_t>(digit) % 4];
  return digit;
}

std::string make_hex(Numbers& numbers, Shape shape, std::string_view occurrence) {
  const bool capitals = is_in_capitals(occurrence);
  std::string text(occurrence);
  size_t place = 0;
  for (char& character : text) {
    if (!is_hex_digit(character)) continue;
    const char digit = make_hex_digit(numbers, shape, place++, character);
    character = capitals && is_lower(digit) ? static_cast<char>(digit - 'a' + 'A') : digit;
  }
  return text;
}

}  // namespace

Shape shape_of(IdentifierKind kind, std::string_view original) {
  if (is_mac(original)) return Shape::mac;
  if (has_form(original, kUuidForm)) return Shape::uuid;
  if (is_ip_address(AF_INET, original)) return Shape::ipv4;
  if (is_ip_address(AF_INET6, original)) return Shape::ipv6;
  if (kind == IdentifierKind::serial) return serial_shape(original);
  return kind == IdentifierKind::number || kind == IdentifierKind::account_id ? Shape::number : Shape::name;
}

std::string canonical_form(Shape shape, std::string_view original) {
  std::string canonical = folded(original);
  if (shape == Shape::mac || shape == Shape::uuid) {
    canonical.erase(
        std::remove_if(canonical.begin(), canonical.end(), [](char c) { return !is_hex_digit(c); }),
        canonical.end());
  }
  return canonical;
}

std::vector<std::string> spellings(Shape shape, std::string_view original) {
  if (shape != Shape::mac && shape != Shape::uuid) return {std::string(original)};
  const std::string digits = canonical_form(shape, original);
  if (shape == Shape::uuid) return {filled(kUuidForm, digits), digits};
  std::vector<std::string> all = {digits};
  for (const std::string_view form : kMacForms) {
    if (form.size() == original.size()) all.push_back(filled(form, digits));
  }
  return all;
}

std::string make_pseudonym(std::string_view key, std::string_view canonical, unsigned attempt, Shape shape,
                           std::string_view occurrence) {
  Numbers numbers(key, canonical, attempt);
  switch (shape) {
    case Shape::name:
      return make_name(numbers, occurrence);
    case Shape::number:
      return make_number(numbers);
    case Shape::serial:
      return make_serial(numbers, occurrence);
    case Shape::ipv4:
      return make_ipv4(numbers);
    case Shape::ipv6:
      return make_ipv6(numbers);
    case Shape::uuid:
    case Shape::mac:
      return make_hex(numbers, shape, occurrence);
  }
  return {};
}

}  // namespace inv
