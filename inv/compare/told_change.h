// What changed, told as a person would: a sentence for each thing, however many of its facts changed.
#pragma once

#include <string>
#include <vector>

#include "inv/compare/diff.h"

namespace inv {

struct ToldChange {
  enum class Kind { added, removed, replaced, changed };

  Kind kind = Kind::changed;
  std::string thing;  // what kind of thing it is: "Disk"; the path of what the catalogue has no word for
  // "Disk replaced: SIMDISK 1 TB (A) by SIMDISK 2 TB (B)", "Safari 5.1.10 to 6.0"; fit for a terminal. Long
  // values are cut off, and of very many changes of one thing only the first are told.
  std::string sentence;
  std::vector<size_t> changes;  // which of the changes it tells of, by their places
};

// The sentences in the order of the changes. What the catalogue says to follow another fact is not told where
// that one changed too; there is a sentence for at least one of the changes.
std::vector<ToldChange> tell(const std::vector<Change>& changes);

// "added", "removed", "replaced" or "changed".
const char* kind_text(ToldChange::Kind kind);

}  // namespace inv
