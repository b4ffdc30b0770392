// The lists of allowed signers and of revoked keys.
#include <cstdlib>

#include "inv/signature/allowed_signers.h"
#include "inv/signature/pattern_list.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const inv::AllowedSigners list = inv::read_allowed_signers(text);
  for (const inv::AllowedSigner& signer : list.signers) {
    if (signer.principals.empty() || signer.key.ed25519_bytes().size() != 32) std::abort();
    inv::matches_list(signer.principals, "imac@studio.example.com");
    if (signer.namespaces) inv::matches_list(*signer.namespaces, "velkaro-inventory");
  }
  for (const inv::LineFault& fault : list.faults) {
    if (fault.line == 0 || fault.message.empty()) std::abort();
  }
  inv::LineFault fault;
  if (inv::read_revoked_keys(text, &fault).has_value() != fault.message.empty()) std::abort();
  return 0;
}
