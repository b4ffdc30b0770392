// The data element's text.
#pragma once

#include <cstddef>
#include <string_view>

namespace plist {

// The most bytes that a text can decode to.
constexpr size_t decoded_capacity(std::string_view base64) { return base64.size() / 4 * 3; }

// Decodes as Apple's parser does, which refuses nothing: characters outside the alphabet are skipped, padding
// shortens its group and ends nothing, an incomplete last group is dropped. Returns the number of bytes
// written.
size_t decode_base64(std::string_view base64, unsigned char* bytes);

}  // namespace plist
