#include "inv/base/base64.h"

#include <sodium.h>

#include <algorithm>

namespace inv {
namespace {

constexpr int kVariant = sodium_base64_VARIANT_ORIGINAL;
constexpr char kIgnored[] = " \t\n\v\f\r";

}  // namespace

std::string base64(const Digest& digest) {
  std::string text(sodium_base64_ENCODED_LEN(sizeof(Digest), kVariant), '\0');
  sodium_bin2base64(text.data(), text.size(), digest.data(), digest.size(), kVariant);
  text.pop_back();  // the terminating NUL
  return text;
}

std::optional<std::string> from_base64(std::string_view text) {
  // libsodium ignores NUL bytes, and takes bytes beyond ASCII for slashes.
  const auto misread = [](char character) { return static_cast<signed char>(character) <= 0; };
  if (std::any_of(text.begin(), text.end(), misread)) return std::nullopt;
  std::string bytes(text.size(), '\0');
  size_t length = 0;
  if (sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), text.data(),
                        text.size(), kIgnored, &length, nullptr, kVariant) != 0) {
    return std::nullopt;
  }
  bytes.resize(length);
  return bytes;
}

}  // namespace inv
