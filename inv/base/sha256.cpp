#include "inv/base/sha256.h"

#include <sodium.h>

namespace inv {
namespace {

const unsigned char* bytes_of(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

Digest sha256(std::string_view bytes) {
  Digest digest;
  crypto_hash_sha256(digest.data(), bytes_of(bytes), bytes.size());
  return digest;
}

std::string hexadecimal(const Digest& digest) {
  std::string digits(2 * digest.size() + 1, '\0');
  sodium_bin2hex(digits.data(), digits.size(), digest.data(), digest.size());
  digits.pop_back();  // the terminating NUL
  return digits;
}

Digest hmac_sha256(std::string_view key, std::string_view message) {
  crypto_auth_hmacsha256_state state;
  crypto_auth_hmacsha256_init(&state, bytes_of(key), key.size());
  crypto_auth_hmacsha256_update(&state, bytes_of(message), message.size());
  Digest digest;
  crypto_auth_hmacsha256_final(&state, digest.data());
  return digest;
}

}  // namespace inv
