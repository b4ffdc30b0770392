#include "inv/redact/pseudonym_key.h"

#include <sodium.h>

namespace inv {
namespace {

// Never change these: files redacted with the same key could no longer be compared.
constexpr unsigned long long kPasses = 3;
constexpr size_t kMemory = 256u << 20;
constexpr size_t kKeySize = 32;
constexpr size_t kSaltSize = crypto_pwhash_argon2id_SALTBYTES;

unsigned char* bytes_of(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

std::optional<std::string> random_bytes(size_t size) {
  if (sodium_init() < 0) return std::nullopt;
  std::string bytes(size, '\0');
  randombytes_buf(bytes.data(), bytes.size());
  return bytes;
}

// std::nullopt for anything but a salt as written into files.
std::optional<std::string> decoded_salt(std::string_view digits) {
  std::string salt(kSaltSize, '\0');
  size_t size = 0;
  const char* end = nullptr;
  const int failed =
      sodium_hex2bin(bytes_of(salt), salt.size(), digits.data(), digits.size(), nullptr, &size, &end);
  if (failed != 0 || size != kSaltSize || end != digits.data() + digits.size()) return std::nullopt;
  return salt;
}

}  // namespace

std::optional<std::string> random_key() { return random_bytes(kKeySize); }

std::optional<std::string> random_salt() {
  std::optional<std::string> bytes = random_bytes(kSaltSize);
  if (!bytes) return std::nullopt;
  std::string digits(2 * kSaltSize + 1, '\0');
  sodium_bin2hex(digits.data(), digits.size(), bytes_of(*bytes), bytes->size());
  digits.pop_back();  // the terminating NUL
  return digits;
}

std::optional<std::string> salt_of(const Inventory& inventory) {
  for (const Element top : {inventory.snapshot_top(), inventory.asset_top()}) {
    const std::string_view digits = top.text(kSaltAttribute);
    if (decoded_salt(digits)) return std::string(digits);
  }
  return std::nullopt;
}

std::optional<std::string> stretched_key(std::string_view key, std::string_view salt) {
  std::optional<std::string> bytes = decoded_salt(salt);
  std::string stretched(kKeySize, '\0');
  if (!bytes || sodium_init() < 0 ||
      crypto_pwhash(bytes_of(stretched), stretched.size(), key.data(), key.size(), bytes_of(*bytes), kPasses,
                    kMemory, crypto_pwhash_ALG_ARGON2ID13) != 0) {
    return std::nullopt;
  }
  return stretched;
}

}  // namespace inv
