// Who signed a file, and whether that counts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "inv/signature/allowed_signers.h"

namespace inv {

struct Trust {
  std::vector<AllowedSigner> signers;
  std::vector<PublicKey> revoked;
  std::string identity;  // who must have signed; empty: any allowed signer
};

struct SignatureVerdict {
  std::string signer;   // the identity asked for, else the principals of the line that allows the key
  std::string refusal;  // why the signature does not count, as a clause; empty if it does
};

// Judges the signature of a file from the bytes of both; `now` is in seconds since 1970.
SignatureVerdict judge_signature(std::string_view file, std::string_view signature_text, const Trust& trust,
                                 int64_t now);

}  // namespace inv
