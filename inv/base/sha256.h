// SHA-256 and its HMAC, as libsodium computes them: what names the page's own script to a browser, and what
// makes pseudonyms.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace inv {

using Digest = std::array<unsigned char, 32>;

Digest sha256(std::string_view bytes);
// In 64 digits.
std::string hexadecimal(const Digest& digest);
Digest hmac_sha256(std::string_view key, std::string_view message);

}  // namespace inv
