// What changed between two scans of a machine, fact by fact.
#pragma once

#include <string>
#include <vector>

#include "inv/file/inventory.h"

namespace inv {

// Valid as long as the two inventories.
struct Change {
  enum class Kind { added, removed, changed };

  Kind kind = Kind::changed;
  std::string path;  // of the element or attribute: in the new file, or in the old one when it was removed
  std::string old_path;  // of the same thing in the old file, where it may be another; empty when added
  std::string identity;  // of the element: "/Applications/Safari.app"
  std::string label;     // what people call the element: "Safari"; its name in the tree when it has no value
  std::string name;  // of the attribute, or "~key" of the element's annotation; empty for the element itself
  std::string old_value;
  std::string new_value;
  // The exact values behind rounded ones; empty when there are none.
  std::string_view old_base;
  std::string_view new_base;
  // The element in each file; none where it was added or removed.
  Element old_element;
  Element new_element;
  // Of an element that was added or removed: what it is below, in each file; none for the top of a tree.
  Element old_above;
  Element new_above;

  Element element() const { return new_element ? new_element : old_element; }
};

enum class Facts {
  lasting,  // without what changes in every scan: times, uptime, free space, processes, environment
  all,
};

// The changes in the order of the old file, then, at each element, what was added to it. Elements are paired
// by identity_of(), and what only says more about an element with it. Of those that nothing identifies, or
// that are identified by the same, those of equal contents are paired, and then what is left over in its
// order; so are attributes that are only numbered. A compound fact, which is there as an attribute and as an
// element, is the element. Secrets are compared unmasked, and shown as the inventories show them.
std::vector<Change> diff(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts);

// "added", "removed" or "changed".
const char* kind_text(Change::Kind kind);

}  // namespace inv
