// An inventory as flat facts: one for each value, with the path that finds it again.
#pragma once

#include <string>
#include <string_view>

#include "inv/facts/catalogue.h"
#include "inv/facts/paths.h"
#include "inv/file/inventory.h"

namespace inv {

// Its paths are valid during the visit.
struct Fact {
  std::string_view path;     // see paths.h
  std::string_view element;  // the path of its tag: the same path for a tag's own value
  std::string_view name;     // the last segment of its path
  std::string_view value;
  std::string_view unit;        // of the value; empty for texts and plain numbers
  std::string_view base_value;  // the exact value behind a rounded one: bytes for sizes, else empty
};

// The unit of an attribute of a tag, which the catalogue knows or not: what the file says, else what the
// scanner is known to write; empty for none.
std::string_view unit_of(const CatalogueFact* tag, const Attribute& attribute);

// Whether a tag or an attribute is a fact by itself. A tag without a value only holds others; an attribute
// marked "complex" represents the tag of the same name, which holds its members.
inline bool is_fact(Element element) { return !element.value().empty(); }
inline bool is_fact(const Attribute& attribute) {
  return !attribute.has("complex") || !attribute.value.empty();
}

// Calls visit(const Fact&) for every fact of a tree, in the order of the text.
template <typename Visit>
void each_fact(const Document& document, Visit visit) {
  for (const Record& record : document.top().subtree()) {
    const Element tag(&record);
    const std::string element = path_of(tag);
    if (is_fact(tag)) visit(Fact{element, element, tag.name(), tag.value(), {}, {}});
    std::string path = element == "/" ? element : element + "/";
    const size_t start = path.size();
    const CatalogueFact* known = find_fact(tag);
    for (const Attribute& attribute : tag.attributes()) {
      if (!is_fact(attribute)) continue;
      path.replace(start, std::string::npos, attribute.name);
      visit(Fact{path, element, attribute.name, attribute.value, unit_of(known, attribute),
                 attribute.annotation("base-value")});
    }
  }
}

// The facts of all readable trees of a file.
template <typename Visit>
void each_fact(const Inventory& inventory, Visit visit) {
  for (const Content& content : inventory.contents) {
    if (content.document) each_fact(*content.document, visit);
  }
}

}  // namespace inv
