// The inventory tree as a document: its "?zxml" text and its four encoded forms.
#pragma once

#include <string>
#include <vector>

#include "zxml/container.h"
#include "zxml/tag.h"

class InventoryTree {
 public:
  // One part of a split form: the header "Root", or one child of the top element.
  struct Section {
    uint32_t offset;  // from the start of the output
    uint32_t length;  // in bytes
    std::string name;
  };

  // A tree whose only element is the top one, a leaf of this name. A byte-order flag that is not 0 writes
  // lengths most significant byte first.
  InventoryTree(int32_t byte_order_flag, const char* top_name);
  // A deep copy, without section records.
  InventoryTree(const InventoryTree& source);
  InventoryTree& operator=(const InventoryTree&) = delete;

  Tag& root() { return root_; }
  const Tag& root() const { return root_; }
  Tag& top() { return *root_.child_at(0); }
  const Tag& top() const { return *root_.child_at(0); }
  // The records of the split form made last.
  const std::vector<Section>& sections() const { return sections_; }

  // The operations of Tag on the root: a path begins with "/", which enters the top element.
  void set_attribute(const char* path, Value value, const char* annotation_key = nullptr,
                     const char* annotation_text = nullptr);
  void set_tag_value(const char* path, Value value);
  void annotate_attribute(const char* path, const char* key, const char* text);

  // The tree's bytes: the whole text or its stream, or the parts of a split layout, their index and its
  // offset; then the bytes that identify the layout (container.h). A split layout rewrites the section
  // records.
  Bytes serialize(Layout layout);
  // Writes those bytes to a file; nothing happens when it cannot be opened.
  void save(const char* path, Layout layout);

 private:
  Bytes whole_plain() const;
  Bytes whole_compressed() const;
  Bytes split_plain();
  Bytes split_compressed();
  void add_section_record(const std::string& name, size_t length);
  std::string section_index() const;
  void append_split_end(Bytes& bytes, size_t index_offset, std::string_view end) const;

  std::vector<Section> sections_;
  int32_t byte_order_flag_;
  Tag root_;
};
