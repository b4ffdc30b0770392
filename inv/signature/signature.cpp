#include "inv/signature/signature.h"

#include <sodium.h>

#include "inv/base/base64.h"
#include "inv/base/characters.h"
#include "inv/base/sha256.h"
#include "inv/signature/wire.h"

namespace inv {
namespace {

constexpr std::string_view kBegin = "-----BEGIN SSH SIGNATURE-----";
constexpr std::string_view kEnd = "\n-----END SSH SIGNATURE-----";
constexpr std::string_view kMagic = "SSHSIG";
constexpr uint32_t kVersion = 1;

constexpr char kDamaged[] = "the signature is damaged";

const unsigned char* bytes_of(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

// The bytes inside the armor. As with ssh-keygen, the armor begins with the first line, and anything after
// its end is ignored.
std::optional<std::string> read_armor(std::string_view text) {
  if (!starts_with(text, kBegin)) return std::nullopt;
  text.remove_prefix(kBegin.size());
  if (starts_with(text, "\r")) text.remove_prefix(1);
  if (!starts_with(text, "\n")) return std::nullopt;
  const size_t end = text.find(kEnd, 1);
  if (end == std::string_view::npos) return std::nullopt;
  return from_base64(text.substr(0, end));
}

std::string sha512(std::string_view bytes) {
  std::string digest(crypto_hash_sha512_BYTES, '\0');
  crypto_hash_sha512(reinterpret_cast<unsigned char*>(digest.data()), bytes_of(bytes), bytes.size());
  return digest;
}

std::string digest_of(std::string_view file, std::string_view hash) {
  if (hash == "sha512") return sha512(file);
  const Digest digest = sha256(file);
  return std::string(digest.begin(), digest.end());
}

// The 64 bytes after the signature's type, which must be that of the key.
std::optional<std::string> read_ed25519_signature(std::string_view blob) {
  WireReader reader(blob);
  const std::optional<std::string_view> type = reader.take_string();
  const std::optional<std::string_view> bytes = reader.take_string();
  if (!bytes || *type != kEd25519 || bytes->size() != crypto_sign_ed25519_BYTES || !reader.at_end()) {
    return std::nullopt;
  }
  return std::string(*bytes);
}

std::optional<Signature> refuse(std::string reason, std::string* error) {
  *error = std::move(reason);
  return std::nullopt;
}

// Why an intact signature is of a kind that is not supported; empty if it is supported.
std::string unsupported(const PublicKey& key, std::string_view hash) {
  if (!key.is_ed25519()) {
    return "it is signed with a key of the type " + key.type + ", and only " + std::string(kEd25519) +
           " is supported";
  }
  if (hash != "sha256" && hash != "sha512") {
    return "it is a signature of the hash " + std::string(hash) +
           ", and only sha256 and sha512 are supported";
  }
  return "";
}

// The fields after the magic and the version.
std::optional<Signature> read_fields(WireReader& reader, std::string* error) {
  const std::optional<std::string_view> key_blob = reader.take_string();
  const std::optional<std::string_view> signed_for = reader.take_string();
  reader.take_string();  // reserved: to be ignored
  const std::optional<std::string_view> hash = reader.take_string();
  const std::optional<std::string_view> blob = reader.take_string();
  if (!blob || !reader.at_end()) return refuse(kDamaged, error);

  std::optional<PublicKey> key = read_key(*key_blob);
  if (!key) return refuse(kDamaged, error);
  std::string reason = unsupported(*key, *hash);
  if (!reason.empty()) return refuse(std::move(reason), error);
  std::optional<std::string> bytes = read_ed25519_signature(*blob);
  if (!bytes) return refuse(kDamaged, error);
  return Signature{std::move(*key), std::string(*signed_for), std::string(*hash), std::move(*bytes)};
}

}  // namespace

std::optional<Signature> read_signature(std::string_view text, std::string* error) {
  const std::optional<std::string> blob = read_armor(text);
  if (!blob) return refuse("it is not a signature as ssh-keygen -Y sign makes it", error);
  WireReader reader(*blob);
  if (reader.take(kMagic.size()) != kMagic) return refuse(kDamaged, error);
  if (reader.take_number() != kVersion) return refuse("it is of another version than 1", error);
  return read_fields(reader, error);
}

bool is_signature_of(const Signature& signature, std::string_view file) {
  const std::string reserved;
  const std::string message = std::string(kMagic) + wire_string(signature.signed_for) +
                              wire_string(reserved) + wire_string(signature.hash) +
                              wire_string(digest_of(file, signature.hash));
  return crypto_sign_ed25519_verify_detached(bytes_of(signature.bytes), bytes_of(message), message.size(),
                                             bytes_of(signature.key.ed25519_bytes())) == 0;
}

}  // namespace inv
