// An inventory as flat facts: one for each value, with its path.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/facts/path_trail.h"
#include "inv/facts/paths.h"
#include "inv/file/inventory.h"

namespace inv {

// Its views are valid during the visit.
struct Fact {
  std::string_view section;  // what holds its tree: "snapshot", "asset"
  std::string_view path;     // see paths.h
  std::string_view kind;     // its path without what follows the colons: "/Software/Soft/version"
  std::string_view index;    // what follows the colons, separated by slashes: "17", "jane"; may be empty
  std::string_view element;  // the path of its tag: the same path if it is the tag's value
  std::string_view name;     // the last segment of its path
  std::string_view value;
  std::string_view unit;        // of the value; empty for texts and plain numbers
  std::string_view base_value;  // the exact value behind a rounded one: bytes for sizes, else empty
};

// The unit of an attribute: as in the file, else the one that the scanner is known to use; may be empty.
// `tag` is null if the catalogue does not know the tag.
std::string_view unit_of(const CatalogueFact* tag, const Attribute& attribute);

// Whether a value is a decimal number that every program reads alike: at most 15 digits, and no leading
// zeros, which serial numbers may have.
bool is_number(std::string_view value);

// Whether a tag or an attribute is itself a fact. A tag without a value only contains others; an attribute
// marked "complex" represents the tag of the same name, which has its members.
inline bool is_fact(Element element) { return !element.value().empty(); }
inline bool is_fact(const Attribute& attribute) {
  return !attribute.has("complex") || !attribute.value.empty();
}

// Calls visit(const Fact&) for every fact of a tree, in the order of the text.
template <typename Visit>
void each_fact(const Document& document, std::string_view section, Visit visit) {
  PathTrail trail;
  for (const Record& record : document.top().subtree()) {
    const Element tag(&record);
    trail.enter(tag);
    if (is_fact(tag)) {
      visit(Fact{
          section, trail.path(), trail.kind(), trail.index(), trail.path(), tag.name(), tag.value(), {}, {}});
    }
    for (const Attribute& attribute : tag.attributes()) {
      if (!is_fact(attribute)) continue;
      trail.enter(attribute);
      visit(Fact{section, trail.path(), trail.kind(), trail.index(), trail.tag_path(), attribute.name,
                 attribute.value, unit_of(trail.known(), attribute), attribute.annotation("base-value")});
    }
  }
}

// The facts of all readable trees of a file.
template <typename Visit>
void each_fact(const Inventory& inventory, Visit visit) {
  for (size_t i = 0; i < inventory.contents.size(); ++i) {
    const Content& content = inventory.contents[i];
    if (content.document)
      each_fact(*content.document, kind_name(inventory.container->sections[i].kind), visit);
  }
}

}  // namespace inv
