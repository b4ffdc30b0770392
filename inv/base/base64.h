// Base64, as used in pages, keys and signatures.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/base/sha256.h"

namespace inv {

std::string base64(const Digest& digest);

// The bytes that a text encodes; blanks and line ends anywhere in it are ignored. std::nullopt if it contains
// anything else, is not padded to whole groups, or ends with bits that belong to no byte.
std::optional<std::string> from_base64(std::string_view text);

}  // namespace inv
