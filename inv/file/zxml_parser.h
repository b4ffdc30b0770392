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
// Limit for the lines of a file's texts: each costs up to a hundred bytes of memory, however short it is. The
// largest real inventories have half a million.
constexpr size_t kMostLines = 2'000'000;
// Limit for the paths of all elements and attributes together, in bytes: most commands write all of them out.
// The largest real inventories have thirty million.
constexpr uint64_t kMostPathBytes = 1ull << 28;
// Limit for a line, in bytes: output made from a value may be several times as long. The longest real lines
// are command lines and environment variables, at most a million bytes together on a Mac.
constexpr size_t kLongestLine = 4u << 20;

// std::nullopt if the text breaks the grammar or exceeds a limit; the fault then has the line, the byte and
// the reason, and an offset of 0.
std::optional<Document> parse_text(std::string text, Fault* fault, size_t most_lines = kMostLines);

}  // namespace inv
