// Makes text from files safe to show.
#pragma once

#include <string>
#include <string_view>

namespace inv {

// What replaces bytes that are not UTF-8.
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool is_utf8(std::string_view text);

// The same text with each broken sequence replaced by one U+FFFD, as in plist/utf8.h.
std::string to_utf8(std::string_view text);

// For a terminal: valid UTF-8 without anything that would move the cursor, change colours or the writing
// direction, or be invisible. Such characters become U+FFFD; a carriage return, which means a line end,
// becomes U+21B5.
std::string printable(std::string_view text);
// The same for a text of several lines, which keeps its line feeds.
std::string printable_lines(std::string_view text);

// How many terminal columns a valid text takes: none for a combining accent, two for wide East Asian
// characters and emoji.
size_t columns(std::string_view text);

// The text shortened to this many columns, with an ellipsis at its end if something is missing.
std::string shorten(std::string_view text, size_t most_columns);
// The same with the ellipsis at the beginning, for texts that differ at their ends.
std::string shorten_beginning(std::string_view text, size_t most_columns);

// The text padded with blanks, after it or before it, to this many columns.
std::string pad_right(std::string text, size_t width);
std::string pad_left(std::string text, size_t width);

}  // namespace inv
