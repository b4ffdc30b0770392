// What the "?zxml" text is made of, for writers and readers. docs/inv-format.md describes it line by line.
#pragma once

#include <string_view>

// What every text begins with: a byte-order mark and the format's name.
constexpr std::string_view kTextMark = "\xEF\xBB\xBF?zxml\n";
// How lines begin that are not attributes.
constexpr char kBranchMarker = '+';
constexpr char kLeafMarker = '*';
constexpr char kAnnotationMarker = '~';
// Ends a branch.
constexpr std::string_view kClosingLine = "-\n";
