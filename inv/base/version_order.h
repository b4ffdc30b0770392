// Versions in the order in which they were published, which is not that of their letters: 5.9 is before 5.10.
#pragma once

#include <string_view>

namespace inv {

// Negative if the first is earlier, 0 if they are equal, positive if it is later. Numbers are compared as
// numbers, a missing part is 0 ("6" is "6.0"), case does not matter, and separators are skipped. Pre-release
// words (alpha, a, beta, b, rc, ...) come before the release: "6.0b2" is earlier than "6.0", and "1.0.2k"
// later than "1.0.2".
int compare_versions(std::string_view one, std::string_view other);

}  // namespace inv
