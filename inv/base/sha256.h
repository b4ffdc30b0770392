// SHA-256 and its HMAC from libsodium: a page's script is allowed by its digest, and pseudonyms are HMACs.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace inv {

using Digest = std::array<unsigned char, 32>;

Digest sha256(std::string_view bytes);
// 64 digits.
std::string hexadecimal(const Digest& digest);
Digest hmac_sha256(std::string_view key, std::string_view message);

}  // namespace inv
