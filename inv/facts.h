// An inventory as flat facts: one for each value, with the path that finds it again.
#pragma once

#include <string>
#include <string_view>

#include "inv/inventory.h"
#include "inv/paths.h"

namespace inv {

struct Fact {
  std::string_view path;  // see paths.h; valid during the visit
  std::string_view name;  // its last segment
  std::string_view value;
  std::string_view unit;        // of the value; empty for texts and plain numbers
  std::string_view base_value;  // the exact value that a rounded one stands for: bytes for sizes, else empty
};

// The unit of an attribute of a tag: what the file says, else what the scanner is known to write; empty for
// none.
std::string_view unit_of(Element element, const Attribute& attribute);

// Whether a tag or an attribute is a fact by itself. A tag without a value only holds others; an attribute
// that is marked "complex" stands for the tag of the same name, which holds its members.
inline bool is_fact(Element element) { return !element.value().empty(); }
inline bool is_fact(const Attribute& attribute) {
  return !attribute.has("complex") || !attribute.value.empty();
}

// Calls visit(const Fact&) for every fact of a tree, in the order of the text.
template <typename Visit>
void each_fact(const Document& document, Visit visit) {
  std::string path;
  for (const Record& record : document.top().subtree()) {
    const Element element(&record);
    path = path_of(element);
    const size_t length = path.size();
    if (is_fact(element)) visit(Fact{path, element.name(), element.value(), {}, {}});
    if (path != "/") path += '/';
    const size_t base = path.size();
    for (const Attribute& attribute : element.attributes()) {
      if (!is_fact(attribute)) continue;
      path.resize(base);
      path += attribute.name;
      visit(Fact{path, attribute.name, attribute.value, unit_of(element, attribute),
                 attribute.annotation("base-value")});
    }
    path.resize(length);
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
