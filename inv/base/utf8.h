// Text from files, made fit for the place where it is shown.
#pragma once

#include <string>
#include <string_view>

namespace inv {

// What replaces bytes that are not UTF-8.
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool is_utf8(std::string_view text);

// The same text with each broken sequence replaced by one U+FFFD, as in plist/utf8.h.
std::string to_utf8(std::string_view text);

// For a terminal: valid UTF-8 without anything that would move the cursor, change colours, turn the writing
// direction or not be seen at all. Such characters become U+FFFD; a carriage return, which means a line end,
// becomes U+21B5.
std::string printable(std::string_view text);
// The same for a text of lines, whose ends stay line feeds.
std::string printable_lines(std::string_view text);

// How many columns of a terminal a valid text takes: none for a combining accent, two for wide East Asian
// characters and pictures.
size_t columns(std::string_view text);

// The text shortened to this many columns, with an ellipsis at its end when something is missing.
std::string shorten(std::string_view text, size_t most_columns);
// The same with the ellipsis at the beginning, for texts whose ends tell them apart.
std::string shorten_beginning(std::string_view text, size_t most_columns);

// The text padded with blanks, after or before it, to this many columns.
std::string pad_right(std::string text, size_t width);
std::string pad_left(std::string text, size_t width);

}  // namespace inv
