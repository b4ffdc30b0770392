// Texts that are recognised as secrets by their shape, whatever their name.
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
// of the text. They do not overlap.
std::vector<TextPart> secret_shapes_in(std::string_view text);

// Whether a text by itself is long and random: letters and digits mixed as nobody writes them. UUIDs with or
// without dashes are not, nor are paths or names of several words.
bool is_random_text(std::string_view text);

// Whether a text is an absolute path, or one that begins at a home folder.
bool is_path(std::string_view text);

}  // namespace inv
