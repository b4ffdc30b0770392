// A quick look at how deeply a list nests, ahead of a parser that recurses.
#pragma once

#include <string_view>

namespace plist {

// True when arrays and dictionaries nest more deeply than kMaximumDepth (see scanner.h), comments and CDATA
// sections not counted. Up to the first place where a list is not well-formed the count is exact; no parser
// goes on from there.
bool nested_too_deeply(std::string_view list);

}  // namespace plist
