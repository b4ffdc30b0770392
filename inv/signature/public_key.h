// Public keys as OpenSSH writes them: "ssh-ed25519 AAAAC3Nz..." in a text, the same bytes in a signature.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace inv {

// The only type of key whose signatures are checked here.
constexpr std::string_view kEd25519 = "ssh-ed25519";

struct PublicKey {
  std::string type;  // "ssh-ed25519", "ssh-rsa", "ecdsa-sha2-nistp256", ...
  std::string blob;  // its bytes, which begin with the type

  bool is_ed25519() const { return type == kEd25519; }
  // The 32 bytes after the type; only for an Ed25519 key.
  std::string_view ed25519_bytes() const;
  // "SHA256:" and the digest, as ssh-keygen -l shows it.
  std::string fingerprint() const;

  bool operator==(const PublicKey& other) const { return blob == other.blob; }
};

// The key with these bytes; std::nullopt if they name no type, or are an Ed25519 key of the wrong length. The
// contents of other types are not checked.
std::optional<PublicKey> read_key(std::string_view blob);

// Takes a type and a key in Base64 off the front of a text, which may continue after a blank; leading blanks
// are skipped. std::nullopt, and the text unchanged, if it begins otherwise or the two do not agree.
std::optional<PublicKey> take_key(std::string_view& text);

// What separates the words of a line.
constexpr std::string_view kBlanks = " \t\r\n";
std::string_view skip_blanks(std::string_view text);

}  // namespace inv
