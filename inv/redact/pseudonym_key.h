// The key that pseudonyms depend on, derived from the operator's. Hardware addresses and serial numbers have
// few bits, so anyone with a redacted file could try keys until one fits: each try is made expensive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/file/inventory.h"

namespace inv {

// The attribute of a redacted tree's top element that holds the salt, in hexadecimal: whoever has the key can
// make the same pseudonyms again, and a precomputed table of keys is useless for any other salt.
constexpr std::string_view kSaltAttribute = "pseudonym-salt";

// The minimum in bytes. Shorter keys could be guessed in spite of the stretching.
constexpr size_t kShortestKey = 12;

// Random bytes that are never stored, so that nobody can make the same pseudonyms again. std::nullopt if the
// machine provides no random numbers.
std::optional<std::string> random_key();

// A random salt, in hexadecimal; std::nullopt if the machine provides no random numbers.
std::optional<std::string> random_salt();

// The salt in a redacted file; std::nullopt if it was not redacted with a chosen key.
std::optional<std::string> salt_of(const Inventory& inventory);

// The key stretched with such a salt (Argon2id, 256 MiB, three passes: about a second). std::nullopt if there
// is not enough memory or the salt is invalid.
std::optional<std::string> stretched_key(std::string_view key, std::string_view salt);

}  // namespace inv
