// Base64, as pages, keys and signatures write bytes down.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/base/sha256.h"

namespace inv {

std::string base64(const Digest& digest);

// The bytes that a text encodes; blanks and line ends anywhere in it do not count. None when it has anything
// else, is not padded to whole groups, or ends with bits that belong to no byte.
std::optional<std::string> from_base64(std::string_view text);

}  // namespace inv
