// Lists of patterns, as the files of OpenSSH have them: "*@example.com,!guest?@example.com".
#pragma once

#include <string_view>

namespace inv {

// Whether a text matches one of the patterns and none of those that begin with "!". In a pattern, "*" matches
// any text and "?" any single byte.
bool matches_list(std::string_view list, std::string_view text);

}  // namespace inv
