// Public keys as OpenSSH writes them: "ssh-ed25519 AAAAC3Nz..." in a text, the same bytes in a signature.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace inv {

// The one type of key whose signatures are checked here.
constexpr std::string_view kEd25519 = "ssh-ed25519";

struct PublicKey {
  std::string type;  // "ssh-ed25519", "ssh-rsa", "ecdsa-sha2-nistp256", ...
  std::string blob;  // its bytes, which begin with the type

  bool is_ed25519() const { return type == kEd25519; }
  // The 32 bytes after the type; only of a key of that type.
  std::string_view ed25519_bytes() const;
  // "SHA256:" and the digest, as ssh-keygen -l shows it.
  std::string fingerprint() const;

  bool operator==(const PublicKey& other) const { return blob == other.blob; }
};

// The key of these bytes. None when they name no type, or are an Ed25519 key of the wrong length; what other
// types are made of is not looked at.
std::optional<PublicKey> read_key(std::string_view blob);

// Takes a type and a key in Base64 off the front of a text, which may go on after a blank; blanks before them
// are skipped. None, and the text as it was, when it begins otherwise or the two do not agree.
std::optional<PublicKey> take_key(std::string_view& text);

// What separates the words of a line.
constexpr std::string_view kBlanks = " \t\r\n";
std::string_view skip_blanks(std::string_view text);

}  // namespace inv
