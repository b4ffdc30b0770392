// Between UTF-8, as strings are kept here, and UTF-16, as CoreFoundation and ICU take them.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <string>
#include <string_view>

namespace cf {

constexpr bool is_high_surrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool is_low_surrogate(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

std::u16string to_utf16(std::string_view utf8);

// A surrogate without its other half becomes U+FFFD.
std::string to_utf8(std::u16string_view utf16);

}  // namespace cf
