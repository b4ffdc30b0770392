// What changed, as text for people, for programs and for tickets.
#pragma once

#include <string>
#include <vector>

#include "inv/compare/diff.h"
#include "inv/compare/told_change.h"
#include "inv/show/terminal.h"

namespace inv {

// A sentence a line.
std::string changes_text(const std::vector<ToldChange>& told, const Terminal& terminal);
// An array of objects, one for each change, with the sentence that tells of it.
std::string changes_json(const std::vector<Change>& changes, const std::vector<ToldChange>& told);
// A heading with the machine and the times of both scans, and a list. Nothing from a file is taken for
// markup.
std::string changes_markdown(const Inventory& old_inventory, const Inventory& new_inventory,
                             const std::vector<ToldChange>& told);

// "these are two different machines: A and B"; empty when it is one.
std::string machine_warning(const Inventory& old_inventory, const Inventory& new_inventory);

}  // namespace inv
