// Texts that are secrets by what they look like, whatever they are called.
#pragma once

#include <string_view>
#include <vector>

namespace inv {

// A part of a text, in bytes.
struct TextPart {
  size_t offset = 0;
  size_t length = 0;
};

// Private keys, tokens with well-known beginnings, JSON web tokens, and the passwords of URLs, in the order
// of the text. None lies in another.
std::vector<TextPart> secret_shapes_in(std::string_view text);

// Whether a text that stands alone is long and random: of letters and digits mixed as nobody writes them. A
// UUID is not, with dashes or without; nor is a path, or a name of several words.
bool is_random_text(std::string_view text);

// Whether a text is an absolute path, or one that begins at a home folder.
bool is_path(std::string_view text);

}  // namespace inv
