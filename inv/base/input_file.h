// Reads whole files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace inv {

// The bytes of a file; "-" is standard input. std::nullopt, and the reason as a clause, if it cannot be read
// or has more than `limit` bytes.
std::optional<std::string> read_file(const std::string& path, uint64_t limit, std::string* error);

}  // namespace inv
