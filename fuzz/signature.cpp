// An untrusted signature of a file.
#include <cstdlib>

#include "inv/signature/signature.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  std::string error;
  const auto signature = inv::read_signature(text, &error);
  if (signature.has_value() != error.empty()) std::abort();
  if (!signature) return 0;
  if (!signature->key.is_ed25519() || signature->bytes.size() != 64) std::abort();
  inv::is_signature_of(*signature, "a file");
  return signature->key.fingerprint().empty();
}
