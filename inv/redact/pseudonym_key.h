// The key that pseudonyms depend on, made of what an operator chose. Hardware addresses and serial numbers
// have few bits, so whoever has a redacted file could try keys until one fits: each try is made expensive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/file/inventory.h"

namespace inv {

// The attribute of a redacted tree's top element that holds the salt, as hexadecimal digits: whoever has the
// key can make the same pseudonyms again, and a table of keys tried in advance serves for no second salt.
constexpr std::string_view kSaltAttribute = "pseudonym-salt";

// Bytes of a chosen key. Fewer could be guessed in spite of the stretching.
constexpr size_t kShortestKey = 12;

// Random bytes that nobody keeps, for pseudonyms that nobody can make again. None when the machine provides
// no random numbers.
std::optional<std::string> random_key();

// A random salt, in hexadecimal digits; none when the machine provides no random numbers.
std::optional<std::string> random_salt();

// The salt that a redacted file carries; none when it was not redacted with a chosen key.
std::optional<std::string> salt_of(const Inventory& inventory);

// The key stretched with a salt of those above (Argon2id, 256 MiB, three passes: about a second). None when
// there is not enough memory, or the salt is none.
std::optional<std::string> stretched_key(std::string_view key, std::string_view salt);

}  // namespace inv
