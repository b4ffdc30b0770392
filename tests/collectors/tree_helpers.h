// What the collectors' tests share: profiler trees set up in a few words, and trees read back as their text.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "zxml/zXML.h"

// One key of an item. The name may be a path below the item ("IPv4/Router", "_items/item0/dimm_size").
struct Key {
  Key(std::string path, const char* text) : name(std::move(path)) { value.set_string(text); }
  Key(std::string path, int64_t number) : name(std::move(path)), value(number) {}
  Key(std::string path, int number) : Key(std::move(path), static_cast<int64_t>(number)) {}

  std::string name;
  Value value;
};
using Item = std::vector<Key>;

inline InventoryTree empty_profiler() { return InventoryTree(1, "Macintosh"); }
inline InventoryTree empty_snapshot() { return InventoryTree(1, "Snapshot"); }

// Appends an item to a data type, as the profiler's array would hold it.
inline void add_item(InventoryTree& profiler, const std::string& data_type, const Item& item) {
  const std::string items = "/" + data_type + "/_items";
  profiler.set_tag_value(items.c_str(), Value());
  Tag* list = profiler.top().find_child(data_type)->find_child("_items");
  const std::string path = items + "/item" + std::to_string(list->children().size());
  profiler.set_tag_value(path.c_str(), Value());
  for (const Key& key : item) profiler.set_attribute((path + "/" + key.name).c_str(), key.value);
}

// A profiler tree with one data type.
inline InventoryTree profiler_with(const std::string& data_type, std::initializer_list<Item> items) {
  InventoryTree profiler = empty_profiler();
  profiler.set_tag_value(("/" + data_type + "/_items").c_str(), Value());
  for (const Item& item : items) add_item(profiler, data_type, item);
  return profiler;
}

// The tree's text from the top element's line on, without the mark and the header line.
inline std::string tree_text(const InventoryTree& tree) {
  std::string text(tree.top().text_size(), '\0');
  text.resize(tree.top().write_text(text.data(), 0));
  return text;
}

// What a collector writes into an empty snapshot.
inline std::string collected(void (*collect)(InventoryTree&, InventoryTree&), InventoryTree& profiler) {
  InventoryTree snapshot = empty_snapshot();
  collect(snapshot, profiler);
  return tree_text(snapshot);
}
