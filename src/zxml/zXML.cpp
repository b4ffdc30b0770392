#include "zxml/zXML.h"

#include <cstdio>
#include <utility>

InventoryTree::InventoryTree(int32_t byte_order_flag, const char* top_name)
    : byte_order_flag_(byte_order_flag), root_("", Tag::Kind::document) {
  root_.append_leaf(top_name);
}

InventoryTree::InventoryTree(const InventoryTree& source)
    : byte_order_flag_(source.byte_order_flag_), root_(source.root_) {}

void InventoryTree::set_attribute(const char* path, Value value, const char* annotation_key,
                                  const char* annotation_text) {
  root_.set_attribute(path, std::move(value), annotation_key, annotation_text);
}

void InventoryTree::set_tag_value(const char* path, Value value) {
  root_.set_tag_value(path, std::move(value));
}

void InventoryTree::annotate_attribute(const char* path, const char* key, const char* text) {
  root_.annotate_attribute(path, key, text);
}

void InventoryTree::save(const char* path, Layout layout) {
  std::FILE* file = std::fopen(path, "w");
  if (!file) return;
  const Bytes bytes = serialize(layout);
  std::fwrite(bytes.data(), 1, bytes.length(), file);
  std::fflush(file);
  std::fclose(file);
}
