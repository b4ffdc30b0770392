// An opened file: its container, its trees, and everything that is wrong with it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inv/file/container_reader.h"
#include "inv/file/document.h"
#include "inv/file/fault.h"
#include "inv/file/section_text.h"

namespace inv {

// What a section holds; everything is empty if it is damaged.
struct Content {
  std::optional<Layout> layout;  // of a tree
  std::optional<Document> document;
  std::optional<std::string> raw;  // of a raw-data section: the tool's output
  std::optional<uint64_t> size;    // inflated, in bytes
};

struct Inventory {
  std::string file_name;
  std::string bytes;  // the container's views point into it
  std::optional<Container> container;
  std::vector<Content> contents;  // one for each section of the container
  Faults faults;

  // The first tree of its kind; null if there is none or it is damaged.
  const Document* snapshot() const { return first_tree(Section::Kind::snapshot); }
  const Document* asset() const { return first_tree(Section::Kind::asset_info); }
  Element snapshot_top() const { return top_of(snapshot()); }
  Element asset_top() const { return top_of(asset()); }
  const std::string* raw_data() const;
  // The text in the file in place of this shown text (Document::original).
  std::string_view original(std::string_view shown) const;

 private:
  const Document* first_tree(Section::Kind kind) const;
  static Element top_of(const Document* document) { return document ? document->top() : Element(); }
};

// The inflated size of all sections, in bytes.
uint64_t inflated_size(const Inventory& inventory);

// Opens the bytes of a file: intact parts are available, and all others are faults. All sections together may
// inflate to `max_size` bytes; overlapping sections could otherwise amount to many times the file. Returned
// by pointer because its parts point into it.
std::unique_ptr<Inventory> open_inventory(std::string file_name, std::string bytes, uint64_t max_size);

// The same for the file at this path; "-" is standard input. Null, and the reason as a clause, if it cannot
// be read or is itself larger than both `max_size` and the usual limit.
std::unique_ptr<Inventory> open_file(const std::string& path, uint64_t max_size, std::string* error);

// Whether a file with a container holds the profiler's raw output instead of a snapshot.
bool is_debug_file(const Inventory& inventory);

}  // namespace inv
