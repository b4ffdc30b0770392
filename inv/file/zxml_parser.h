// Parses "?zxml" text into a document. docs/inv-format.md describes the text line by line.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/file/document.h"
#include "inv/file/fault.h"
#include "zxml/text_form.h"

namespace inv {

// No collector writes more than six levels; a tree deeper than this is not an inventory.
constexpr uint32_t kDeepestElement = 512;
// How many bytes of a file's limit a line uses up, however short it is: the tree, and what commands make of
// it, takes memory for each. Lines of real inventories have 36 bytes on average, and the largest have half a
// million; the usual limit allows two million.
constexpr uint64_t kBytesOfLine = 128;
constexpr size_t kUsualLines = size_t{1} << 21;  // of the usual limit
// However small the limit, this many lines are read: so few need little memory.
constexpr size_t kFewestLines = size_t{1} << 16;
// How many lines all texts of a file with this limit may have.
size_t most_lines(uint64_t max_size);
// Limit for the paths of all elements and attributes together, in bytes: most commands write all of them out.
// The largest real inventories have thirty million.
constexpr uint64_t kMostPathBytes = 1ull << 28;
// Limit for a line, in bytes: output made from a value may be several times as long. The longest real lines
// are command lines and environment variables, at most a million bytes together on a Mac.
constexpr size_t kLongestLine = 4u << 20;

// std::nullopt if the text breaks the grammar or exceeds a limit; the fault then has the line, the byte and
// the reason, and an offset of 0.
std::optional<Document> parse_text(std::string text, Fault* fault, size_t lines = kUsualLines);

}  // namespace inv
