// What the "?zxml" text is made of, for whoever writes it and whoever reads it. docs/inv-format.md tells it
// line by line.
#pragma once

#include <string_view>

// What every text begins with: a byte-order mark and the format's name.
constexpr std::string_view kTextMark = "\xEF\xBB\xBF?zxml\n";
// How a line begins that is no attribute's.
constexpr char kBranchMarker = '+';
constexpr char kLeafMarker = '*';
constexpr char kAnnotationMarker = '~';
// Ends a branch.
constexpr std::string_view kClosingLine = "-\n";
