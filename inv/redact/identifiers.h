// Where an inventory says whose machine it is: the places that hold names, serial numbers, addresses, UUIDs,
// accounts, command lines and environment values.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "inv/facts/catalogue.h"

namespace inv {

// The kind of identifier that an attribute of a tag holds, or the tag's own value when the attribute is
// empty; none for everything that could be any machine's. In a place that the catalogue does not know, a name
// means what it means in one that it knows.
std::optional<IdentifierKind> identifier_kind(Element element, std::string_view attribute);

// The identifiers in a value of this kind, in order, as views into it. Line ends and other control characters
// separate, and blanks around an identifier do not belong to it.
std::vector<std::string_view> identifiers_in(IdentifierKind kind, std::string_view value);

// The names of accounts and volumes that any text gives away as parts of paths: "jane" in
// "/Users/jane/Applications", "Backup" in "/Volumes/Backup". A folder's name may go on after a blank:
// "/Users/Jane Doe/x" gives "Jane Doe" and then "Jane".
std::vector<std::string_view> identifiers_in_paths(std::string_view text);

// Whether a text as a whole is one of the scanner's own words ("mac:1", "Apple Inc.") or a time of a scan,
// and so is no identifier even when somebody is called so.
bool is_scanner_word(std::string_view text);

}  // namespace inv
