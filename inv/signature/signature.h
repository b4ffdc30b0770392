// Signatures as `ssh-keygen -Y sign` writes them beside a file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/signature/public_key.h"

namespace inv {

// What signatures of inventory files are made for (ssh-keygen -n), so that one that somebody was talked into
// for another purpose does not pass for one.
constexpr std::string_view kSignedFor = "velkaro-inventory";

struct Signature {
  PublicKey key;           // of type Ed25519
  std::string signed_for;  // the namespace, as ssh-keygen calls it
  std::string hash;        // "sha256" or "sha512"
  std::string bytes;       // 64 of them
};

// A signature from its armored text. None, and the reason as a sentence's end, when it is damaged or of a
// kind that is not checked here.
std::optional<Signature> read_signature(std::string_view text, std::string* error);

// Whether it is its key's signature of exactly these bytes.
bool is_signature_of(const Signature& signature, std::string_view file);

}  // namespace inv
