// Points in time, as an allowed-signers file has them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace inv {

// Seconds since 1970 began in UTC, for "YYYYMMDD", "YYYYMMDDHHMM" or "YYYYMMDDHHMMSS"; with "Z" or "UTC"
// behind it, in UTC, else in this machine's time zone. None for anything else, and for times that are not
// after 1970 began. A day that its month does not have is one of the next month, as for ssh-keygen.
std::optional<int64_t> parse_moment(std::string_view text);

}  // namespace inv
