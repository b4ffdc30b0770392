// Items nested in items, as devices on hubs.
#pragma once

#include <vector>

#include "collectors/fields.h"

// Calls `visit` with every item of a list, which may be null, and its depth: 1 in the list itself. Where it
// returns true, the items nested in that item follow before the next one. Hubs can be nested to any depth, so
// the items still to come are kept in a list, the next one last, instead of on the call stack.
template <typename Visit>
void visit_nested(const Tag* items, const Visit& visit) {
  struct Pending {
    const Tag* item;
    int depth;
  };
  std::vector<Pending> pending;
  const auto push = [&pending](const Tag* list, int depth) {
    if (!list) return;
    for (auto item = list->children().rbegin(); item != list->children().rend(); ++item)
      pending.push_back({item->get(), depth});
  };
  push(items, 1);
  while (!pending.empty()) {
    const Pending next = pending.back();
    pending.pop_back();
    if (visit(*next.item, next.depth)) push(find_items(*next.item), next.depth + 1);
  }
}
