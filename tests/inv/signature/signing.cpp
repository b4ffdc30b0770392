#include "inv/signature/signing.h"

#include <sodium.h>

#include "inv/signature/wire.h"

namespace signing {
namespace {

unsigned char* writable(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

const unsigned char* bytes_of(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::string digest_of(std::string_view file, std::string_view hash) {
  const bool sha256 = hash == "sha256";
  std::string digest(sha256 ? crypto_hash_sha256_BYTES : crypto_hash_sha512_BYTES, '\0');
  (sha256 ? crypto_hash_sha256 : crypto_hash_sha512)(writable(digest), bytes_of(file), file.size());
  return digest;
}

}  // namespace

std::string base64(std::string_view bytes) {
  constexpr int kVariant = sodium_base64_VARIANT_ORIGINAL;
  std::string text(sodium_base64_ENCODED_LEN(bytes.size(), kVariant), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes_of(bytes), bytes.size(), kVariant);
  text.pop_back();
  return text;
}

Key::Key(char number)
    : public_key_(crypto_sign_ed25519_PUBLICKEYBYTES, '\0'),
      secret_key_(crypto_sign_ed25519_SECRETKEYBYTES, '\0') {
  const std::string seed(crypto_sign_ed25519_SEEDBYTES, number);
  crypto_sign_ed25519_seed_keypair(writable(public_key_), writable(secret_key_), bytes_of(seed));
}

std::string Key::blob() const { return inv::wire_string("ssh-ed25519") + inv::wire_string(public_key_); }

std::string Key::line() const { return "ssh-ed25519 " + base64(blob()); }

std::string Key::sign(std::string_view message) const {
  std::string signature(crypto_sign_ed25519_BYTES, '\0');
  crypto_sign_ed25519_detached(writable(signature), nullptr, bytes_of(message), message.size(),
                               bytes_of(secret_key_));
  return signature;
}

std::string signature_blob(const Key& key, std::string_view file, const Form& form) {
  using inv::wire_string;
  const std::string message = "SSHSIG" + wire_string(form.signed_for) + wire_string("") +
                              wire_string(form.hash) + wire_string(digest_of(file, form.hash));
  const std::string proper =
      wire_string(form.type) + wire_string(form.bytes.value_or(key.sign(message))) + form.behind_bytes;
  const std::string version = {0, 0, 0, static_cast<char>(form.version)};
  return form.magic + version + wire_string(form.key_blob.value_or(key.blob())) +
         wire_string(form.signed_for) + wire_string(form.reserved) + wire_string(form.hash) +
         wire_string(proper) + form.behind_all;
}

std::string armored(std::string_view blob) {
  constexpr size_t kColumns = 70;
  std::string text = "-----BEGIN SSH SIGNATURE-----\n";
  const std::string encoded = base64(blob);
  for (size_t i = 0; i < encoded.size(); i += kColumns) text += encoded.substr(i, kColumns) + "\n";
  return text + "-----END SSH SIGNATURE-----\n";
}

std::string signature_text(const Key& key, std::string_view file, const Form& form) {
  return armored(signature_blob(key, file, form));
}

}  // namespace signing
