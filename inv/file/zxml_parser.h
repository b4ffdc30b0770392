// From "?zxml" text to a document. docs/inv-format.md describes the text line by line.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/file/document.h"
#include "inv/file/fault.h"
#include "zxml/text_form.h"

namespace inv {

// No collector writes deeper than six levels; what comes deeper than this is not an inventory.
constexpr uint32_t kDeepestElement = 512;
// Of the lines of a file's texts: each costs up to a hundred bytes of memory, however short it is. The
// largest real inventories have half a million.
constexpr size_t kMostLines = 2'000'000;
// Of the paths of all elements and attributes together, in bytes: most commands write them all out, and no
// more than this. The largest real inventories have thirty million.
constexpr uint64_t kMostPathBytes = 1ull << 28;
// Of a line, in bytes: what is made of a value may be several times as long. The longest real ones are
// command lines and variables of the environment, together a million bytes on a Mac.
constexpr size_t kLongestLine = 4u << 20;

// None when the text breaks the grammar or has more lines than allowed; then the fault has the line, the byte
// and the reason, and an offset of 0.
std::optional<Document> parse_text(std::string text, Fault* fault, size_t most_lines = kMostLines);

}  // namespace inv
