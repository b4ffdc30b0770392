// Items that hang on items, as devices on hubs.
#pragma once

#include <vector>

#include "collectors/fields.h"

// Calls `visit` with every item of a list and, where it returns true, with the items on it before the next
// one. The depth of those in the list, which may be none, is 1. Hubs stand in hubs as deep as the machine
// says, so the items still to come are kept in a list, the next one last.
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
