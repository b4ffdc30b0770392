// Points in time, as an allowed-signers file has them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace inv {

// Seconds since 1970 began in UTC, for "YYYYMMDD", "YYYYMMDDHHMM" or "YYYYMMDDHHMMSS"; in UTC if "Z" or "UTC"
// follows, else in this machine's time zone. std::nullopt for anything else, and for times that are not after
// the beginning of 1970. Days beyond the end of a month roll over into the next one, as with ssh-keygen.
std::optional<int64_t> parse_moment(std::string_view text);

}  // namespace inv
