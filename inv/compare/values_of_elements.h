#pragma once

#include <functional>
#include <vector>

#include "inv/file/document.h"

namespace inv {

// A value for each element of the trees in use, indexed by record, which takes less memory than a map.
template <typename Value>
class ValuesOfElements {
 public:
  explicit ValuesOfElements(Value unset) : unset_(unset) {}

  typename std::vector<Value>::reference of(Element element) {
    const Record* record = element.subtree().begin();
    for (Tree& tree : trees_) {
      const bool is_in_tree =
          !std::less<>()(record, tree.records.begin()) && std::less<>()(record, tree.records.end());
      if (is_in_tree) return tree.values[static_cast<size_t>(record - tree.records.begin())];
    }
    Element top = element;
    while (top.parent()) top = top.parent();
    trees_.push_back({top.subtree(), std::vector<Value>(top.subtree().size(), unset_)});
    return of(element);
  }

 private:
  struct Tree {
    Range<Record> records;
    std::vector<Value> values;
  };

  Value unset_;
  std::vector<Tree> trees_;
};

}  // namespace inv
