// Where an inventory says whose machine it is: the places that hold names, serial numbers, addresses, UUIDs,
// accounts, command lines and environment values.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "inv/facts/catalogue.h"

namespace inv {

// What the places of a tree hold. It remembers the last tag, so the lines of a text are cheap to ask about
// one after another.
class Places {
 public:
  // The kind of identifier that an attribute of a tag holds, or the tag's own value when the attribute is
  // empty; none for everything that could be any machine's. In a place that the catalogue does not know, a
  // name means what it means in one that it knows.
  std::optional<IdentifierKind> kind(Element element, std::string_view attribute);

 private:
  Element element_;
  const CatalogueFact* tag_ = nullptr;
};

// The identifiers in a value of this kind, in order, as views into it. Line ends and other control characters
// separate, and blanks around an identifier do not belong to it. A full name is followed by the words in it.
// What identifies nobody is none: common words, placeholders, the system's own accounts and addresses.
std::vector<std::string_view> identifiers_in(IdentifierKind kind, std::string_view value);

// Whether a text as a whole is one of the scanner's own words ("mac:1", "Apple Inc.") or a time, and
// so is no identifier even when somebody is called so.
bool is_scanner_word(std::string_view text);

}  // namespace inv
