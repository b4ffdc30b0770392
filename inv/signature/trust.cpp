#include "inv/signature/trust.h"

#include <algorithm>

#include "inv/signature/pattern_list.h"
#include "inv/signature/signature.h"

namespace inv {
namespace {

// Why a line with the key does not allow it; empty if it does.
std::string reason_against(const AllowedSigner& signer, const std::string& identity, int64_t now) {
  if (!identity.empty() && !matches_list(signer.principals, identity)) return "is not that of " + identity;
  if (signer.namespaces && !matches_list(*signer.namespaces, kSignedFor)) {
    return "may not sign for " + std::string(kSignedFor);
  }
  if (signer.valid_after && now < *signer.valid_after) return "is not valid yet";
  if (signer.valid_before && now > *signer.valid_before) return "is not valid any more";
  return "";
}

// The same for all lines. A key may be in several lines; one that allows it is enough.
SignatureVerdict judge_key(const PublicKey& key, const Trust& trust, int64_t now) {
  std::string reason = "is not an allowed signer's";
  for (const AllowedSigner& signer : trust.signers) {
    if (!(signer.key == key)) continue;
    reason = reason_against(signer, trust.identity, now);
    if (reason.empty()) return {trust.identity.empty() ? signer.principals : trust.identity, ""};
  }
  return {"", "the key " + key.fingerprint() + " " + reason};
}

}  // namespace

SignatureVerdict judge_signature(std::string_view file, std::string_view signature_text, const Trust& trust,
                                 int64_t now) {
  std::string error;
  const std::optional<Signature> signature = read_signature(signature_text, &error);
  if (!signature) return {"", error};
  if (signature->signed_for != kSignedFor) {
    return {"",
            "it is made for \"" + signature->signed_for + "\", not for \"" + std::string(kSignedFor) + "\""};
  }
  if (!is_signature_of(*signature, file)) return {"", "it is not a signature of this file"};
  const bool revoked =
      std::find(trust.revoked.begin(), trust.revoked.end(), signature->key) != trust.revoked.end();
  if (revoked) return {"", "the key " + signature->key.fingerprint() + " is revoked"};
  return judge_key(signature->key, trust, now);
}

}  // namespace inv
