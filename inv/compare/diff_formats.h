// What changed, as text for people, for programs and for tickets.
#pragma once

#include <string>
#include <vector>

#include "inv/base/text_sink.h"
#include "inv/compare/change_sentences.h"
#include "inv/compare/diff.h"
#include "inv/show/terminal.h"

namespace inv {

// Each puts whole lines into the sink, and no more than one change at a time.

// One sentence per line.
void changes_text(const ChangeSentences& sentences, const Terminal& terminal, const TextSink& sink);
// An array of objects, one for each change, with the sentence about it.
void changes_json(const ChangeSentences& sentences, const TextSink& sink);
// A heading with the machine and the times of both scans, and a list. Text from a file is never markup.
void changes_markdown(const Inventory& old_inventory, const Inventory& new_inventory,
                      const ChangeSentences& sentences, const TextSink& sink);

// "these are two different machines: A and B"; empty if it is the same one.
std::string machine_warning(const Inventory& old_inventory, const Inventory& new_inventory);

}  // namespace inv
