// What changed between two scans of a machine.
#pragma once

#include <string>
#include <vector>

#include "inv/file/inventory.h"
#include "inv/show/terminal.h"

namespace inv {

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
};

enum class Facts {
  lasting,  // without what changes in every scan: times, uptime, free space, processes, environment
  all,
};

// The changes in the order of the old file, then, at each element, what was added to it. Elements are paired
// by identity_of(); those of equal identity one after the other. Secrets are compared unmasked, and shown as
// the inventories show them.
std::vector<Change> diff(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts);

// "added", "removed" or "changed".
const char* kind_text(Change::Kind kind);

// For people: one line per change.
std::string describe(const Change& change, const Terminal& terminal);
// As an array of objects.
std::string changes_json(const std::vector<Change>& changes);

}  // namespace inv
