// Profiler items that hold lists of further items: hubs, controllers, disks, graphics adapters.
#pragma once

#include "tests/collectors/tree_helpers.h"

// An item with the given keys and a child list ("_items", "volumes").
inline Item holding(const std::string& list, std::initializer_list<Item> items, Item keys = {}) {
  int index = 0;
  for (const Item& item : items) {
    const std::string prefix = list + "/item" + std::to_string(index++) + "/";
    for (const Key& key : item) {
      keys.push_back(key);
      keys.back().name = prefix + key.name;
    }
  }
  return keys;
}
