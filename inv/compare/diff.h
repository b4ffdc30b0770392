// What changed between two scans of a machine, fact by fact.
#pragma once

#include <string>
#include <vector>

#include "inv/facts/catalogue.h"
#include "inv/file/inventory.h"

namespace inv {

// Valid as long as the two inventories. It only refers to what changed, and makes its texts on request: two
// large files with nothing in common differ in millions of facts.
struct Change {
  enum class Kind { added, removed, changed };

  Kind kind = Kind::changed;
  // The element in each file; empty on the side that lacks it.
  Element old_element;
  Element new_element;
  // What changed in the element, in each file: an attribute or an annotation. All are null if it is the
  // element itself.
  const Attribute* old_attribute = nullptr;
  const Attribute* new_attribute = nullptr;
  const Annotation* old_annotation = nullptr;
  const Annotation* new_annotation = nullptr;
  // For an element that was added or removed: its parent in each file; empty for the top of a tree.
  Element old_above;
  Element new_above;

  Element element() const { return new_element ? new_element : old_element; }
  const Attribute* attribute() const { return new_attribute ? new_attribute : old_attribute; }
  const Annotation* annotation() const { return new_annotation ? new_annotation : old_annotation; }
  bool is_of_element() const { return !attribute() && !annotation(); }
  bool is_whole_element() const { return is_of_element() && kind != Kind::changed; }
  bool is_own_value() const { return is_of_element() && kind == Kind::changed; }

  // The path of the element or attribute: in the new file, or in the old one if it was removed.
  std::string path() const;
  // The path of the same thing in the old file, where it may differ; empty if an element was added.
  std::string old_path() const;
  // What people call the element: "Safari"; its name in the tree if it has no value.
  std::string_view label() const;
  // The name of the attribute, or "~key" of the element's annotation; empty for the element itself.
  std::string name() const;
  // Empty if there was no value, or is none any more.
  std::string_view old_value() const;
  std::string_view new_value() const;
  // The exact values behind rounded ones; may be empty.
  std::string_view old_base() const;
  std::string_view new_base() const;
};

enum class Facts {
  lasting,  // without what changes in every scan: times, uptime, free space, processes, environment
  all,
};

// The changes in the order of the old file, then, at each element, what was added to it; those of one
// element's value, annotations and attributes are adjacent. Elements are paired by identity_of(), and details
// with their element. Elements without an identity, or with the same one, are paired by equal contents, and
// the rest in order; so are attributes that are only numbered. A compound fact, which is both an attribute
// and an element, counts as the element. Secrets are compared unmasked, and shown as the inventories show
// them.
std::vector<Change> diff(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts);

// What the catalogue says about the changed attribute; null for other changes.
const CatalogueFact* attribute_fact(const Change& change);

// "added", "removed" or "changed".
const char* kind_text(Change::Kind kind);

}  // namespace inv
