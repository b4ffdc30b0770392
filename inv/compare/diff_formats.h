// What changed, as text for people, for programs and for tickets.
#pragma once

#include <string>
#include <vector>

#include "inv/base/text_sink.h"
#include "inv/compare/diff.h"
#include "inv/compare/told_change.h"
#include "inv/show/terminal.h"

namespace inv {

// Each puts whole lines into the sink, and no more than one change at a time.

// A sentence a line.
void changes_text(const ToldChanges& told, const Terminal& terminal, const TextSink& sink);
// An array of objects, one for each change, with the sentence that tells of it.
void changes_json(const ToldChanges& told, const TextSink& sink);
// A heading with the machine and the times of both scans, and a list. Nothing from a file is taken for
// markup.
void changes_markdown(const Inventory& old_inventory, const Inventory& new_inventory, const ToldChanges& told,
                      const TextSink& sink);

// "these are two different machines: A and B"; empty when it is one.
std::string machine_warning(const Inventory& old_inventory, const Inventory& new_inventory);

}  // namespace inv
