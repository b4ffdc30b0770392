// Versions in the order in which they were published, which is not that of their letters: 5.9 is before 5.10.
#pragma once

#include <string_view>

namespace inv {

// Less than 0 when the first is the earlier one, 0 when they are equal, more when it is the later one.
// Numbers count as numbers, what is missing counts as 0 ("6" is "6.0"), capitals do not count, and what
// stands between numbers and words is skipped. Words that announce a version (alpha, a, beta, b, rc, ...) are
// before it: "6.0b2" is earlier than "6.0", and "1.0.2k" later than "1.0.2".
int compare_versions(std::string_view one, std::string_view other);

}  // namespace inv
