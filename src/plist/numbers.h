// The forms of numbers that Apple's property-list parser reads.
#pragma once

#include <optional>
#include <string_view>

#include "plist/events.h"

namespace plist {

// Blanks, a sign, blanks, then decimal digits or 0x and hexadecimal ones, from -2^63 to 2^64 - 1. Nothing may
// follow.
std::optional<Integer> parse_integer(std::string_view text);

// A decimal fraction with or without exponent, "nan", "inf" and "infinity" in any case, the last two with a
// sign too. No blanks. What is too large becomes an infinity, what is too small 0.
std::optional<double> parse_real(std::string_view text);

}  // namespace plist
