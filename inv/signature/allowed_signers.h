// The allowed-signers file of OpenSSH: a line for each key, with the names of those who sign with it.
//
//     imac@studio.example.com,*@lab.example.com namespaces="velkaro-*" ssh-ed25519 AAAAC3Nz... any comment
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inv/signature/public_key.h"

namespace inv {

struct AllowedSigner {
  std::string principals;                 // the patterns of those who sign with the key
  PublicKey key;                          // of type Ed25519
  std::optional<std::string> namespaces;  // the patterns of what it may sign for; std::nullopt: anything
  std::optional<int64_t> valid_after;     // in seconds since 1970; both bounds are inclusive
  std::optional<int64_t> valid_before;
};

// What is wrong with a line of a text.
struct LineFault {
  uint64_t line;  // from 1
  std::string message;
};

struct AllowedSigners {
  std::vector<AllowedSigner> signers;
  // A line that cannot be read or is not supported allows nobody; the other lines still count.
  std::vector<LineFault> faults;
};

AllowedSigners read_allowed_signers(std::string_view text);

// A revocation list: public keys, one per line. std::nullopt, with the fault, if a line cannot be read or the
// list is one of OpenSSH's binary ones: a key that it revokes must not be accepted.
std::optional<std::vector<PublicKey>> read_revoked_keys(std::string_view text, LineFault* fault);

}  // namespace inv
