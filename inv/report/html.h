// Pieces of HTML. Everything from a file goes through escaped().
#pragma once

#include <string>
#include <string_view>

namespace inv {

// Text for element content and for attribute values in double quotes. Bytes that are not UTF-8 and control
// characters become U+FFFD; a carriage return, which means a line end, becomes a line feed.
std::string escaped(std::string_view text);

// A value in any language: escaped, and isolated from the writing direction of the text around it.
std::string isolated(std::string_view text);

}  // namespace inv
