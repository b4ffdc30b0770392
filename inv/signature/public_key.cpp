#include "inv/signature/public_key.h"

#include <sodium.h>

#include <algorithm>

#include "inv/base/base64.h"
#include "inv/signature/wire.h"

namespace inv {
namespace {

// Takes the text up to the next blank off the front.
std::string_view take_word(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

}  // namespace

std::string_view PublicKey::ed25519_bytes() const {
  return std::string_view(blob).substr(blob.size() - crypto_sign_ed25519_PUBLICKEYBYTES);
}

std::string PublicKey::fingerprint() const {
  std::string digest = base64(sha256(blob));
  digest.erase(digest.find('='));
  return "SHA256:" + digest;
}

std::optional<PublicKey> read_key(std::string_view blob) {
  WireReader reader(blob);
  const std::optional<std::string_view> type = reader.take_string();
  if (!type || type->empty()) return std::nullopt;
  if (*type == kEd25519) {
    const std::optional<std::string_view> bytes = reader.take_string();
    if (!bytes || bytes->size() != crypto_sign_ed25519_PUBLICKEYBYTES || !reader.at_end())
      return std::nullopt;
  }
  return PublicKey{std::string(*type), std::string(blob)};
}

std::optional<PublicKey> take_key(std::string_view& text) {
  std::string_view rest = skip_blanks(text);
  const std::string_view type = take_word(rest);
  rest = skip_blanks(rest);
  const std::optional<std::string> blob = from_base64(take_word(rest));
  std::optional<PublicKey> key = blob ? read_key(*blob) : std::nullopt;
  if (!key || key->type != type) return std::nullopt;
  text = rest;
  return key;
}

std::string_view skip_blanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

}  // namespace inv
