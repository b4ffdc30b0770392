// Where an inventory reveals whose machine it is: the places that hold names, serial numbers, addresses,
// UUIDs, accounts, command lines and environment values.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "inv/facts/catalogue.h"

namespace inv {

// What the places of a tree hold. It caches the last tag, so asking about the lines of a text in order is
// cheap.
class Places {
 public:
  // The kind of identifier in an attribute of a tag, or in the tag's own value if `attribute` is empty;
  // std::nullopt for what any machine could have. In a place that the catalogue does not know, a name means
  // what it means elsewhere.
  std::optional<IdentifierKind> kind(Element element, std::string_view attribute);

 private:
  Element element_;
  const CatalogueFact* tag_ = nullptr;
};

// The identifiers in a value of this kind, in order, as views into it. Control characters such as line ends
// separate them, and surrounding blanks do not belong to them. A full name is followed by its words. Common
// words, placeholders and the system's own accounts and addresses identify nobody and are left out.
std::vector<std::string_view> identifiers_in(IdentifierKind kind, std::string_view value);

// Whether a whole text is one of the scanner's own words ("mac:1", "Apple Inc.") or a time, and so is not an
// identifier even if somebody has that name.
bool is_scanner_word(std::string_view text);

}  // namespace inv
