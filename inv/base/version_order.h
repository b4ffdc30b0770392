// Versions in the order in which they were published, which is not that of their letters: 5.9 is before 5.10.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace inv {

// Negative if the first is earlier, 0 if they are equal, positive if it is later. Numbers are compared as
// numbers, a missing part is 0 ("6" is "6.0"), case does not matter, and separators are skipped. Pre-release
// words (alpha, a, beta, b, rc, ...) come before the release: "6.0b2" is earlier than "6.0", and "1.0.2k"
// later than "1.0.2".
int compare_versions(std::string_view one, std::string_view other);

// In bytes; anything longer is not a version.
constexpr size_t kLongestVersion = 1000;

// A text for a version whose bytes compare as the versions do. For numbers separated by points it is easily
// made by hand: each number except trailing zeros has ten digits, with points around it:
// ".0000000005.0000000010." for "5.10.0". Empty for texts longer than kLongestVersion.
std::string version_key(std::string_view version);

}  // namespace inv
