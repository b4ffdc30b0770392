// Signatures of any form, valid and invalid, for the tests of what reads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace signing {

std::string base64(std::string_view bytes);

// An Ed25519 key pair; the same number gives the same one.
class Key {
 public:
  explicit Key(char number);

  std::string blob() const;  // the public key's bytes
  std::string line() const;  // "ssh-ed25519 AAAA..."
  std::string sign(std::string_view message) const;

 private:
  std::string public_key_;
  std::string secret_key_;
};

// The fields of a signature, as ssh-keygen writes them unless a test says otherwise.
struct Form {
  std::string magic = "SSHSIG";
  int version = 1;
  std::optional<std::string> key_blob = {};  // the key's own
  std::string signed_for = "velkaro-inventory";
  std::string reserved = {};
  std::string hash = "sha512";
  std::string type = "ssh-ed25519";       // of the signature proper
  std::optional<std::string> bytes = {};  // the key's signature of the others
  std::string behind_bytes = {};
  std::string behind_all = {};
};

// The form with one field changed.
template <typename Value, typename Given>
Form with(Value Form::*field, Given value) {
  Form form;
  form.*field = std::move(value);
  return form;
}

// What the armor holds.
std::string signature_blob(const Key& key, std::string_view file, const Form& form = {});
std::string armored(std::string_view blob);
// The content of the signature file.
std::string signature_text(const Key& key, std::string_view file, const Form& form = {});

}  // namespace signing
