// Signatures as `ssh-keygen -Y sign` writes them beside a file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/signature/public_key.h"

namespace inv {

// The namespace of inventory signatures (ssh-keygen -n), so that a signature that somebody was talked into
// for another purpose is not accepted.
constexpr std::string_view kSignedFor = "velkaro-inventory";

struct Signature {
  PublicKey key;           // of type Ed25519
  std::string signed_for;  // the namespace, as ssh-keygen calls it
  std::string hash;        // "sha256" or "sha512"
  std::string bytes;       // 64 of them
};

// A signature from its armored text. std::nullopt, and the reason as the end of a sentence, if it is damaged
// or of a kind that is not supported.
std::optional<Signature> read_signature(std::string_view text, std::string* error);

// Whether it is the key's signature of exactly these bytes.
bool is_signature_of(const Signature& signature, std::string_view file);

}  // namespace inv
