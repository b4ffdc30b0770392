#include "zxml/INVfile.h"

#include <utility>

#include "driver/base/new_file.h"

namespace {

constexpr char kSource[] = "INVfile";

// The scan's date, which the console lists without opening the section; empty when the tree has none in text
// form.
const char* timestamp(const InventoryTree& tree) {
  const Attribute* attribute = tree.top().find_attribute("timestamp");
  const char* text = attribute ? attribute->value().text() : nullptr;
  return text ? text : "";
}

}  // namespace

INVfile::~INVfile() {
  if (!frees_borrowed_data) return;
  for (const Section& section : sections_) delete[] section.borrowed_data;
}

void INVfile::add_section(std::unique_ptr<InventoryTree> tree, int32_t kind, Layout layout) {
  Bytes encoded = tree->serialize(layout);
  sections_.push_back({kind, std::move(tree), std::move(encoded), nullptr, 0});
}

void INVfile::add_raw_section(unsigned char* data, size_t length) {
  sections_.push_back({kRawData, nullptr, Bytes(), data, length});
}

ContainerSection INVfile::Section::contents() const {
  ContainerSection contents;
  contents.kind = kind;
  contents.data = {reinterpret_cast<const char*>(borrowed_data), borrowed_length};
  if (tree) {
    contents.data = {reinterpret_cast<const char*>(encoded_tree.data()), encoded_tree.length()};
    contents.counts_as_snapshot = tree->top().name() == "Snapshot";
    contents.timestamp = timestamp(*tree);
  }
  return contents;
}

Bytes INVfile::build(HeaderForm form) const {
  std::vector<ContainerSection> contents;
  for (const Section& section : sections_) contents.push_back(section.contents());
  const ByteOrder order =
      byte_order_flag_ != 0 ? ByteOrder::most_significant_first : ByteOrder::least_significant_first;
  return lay_out_container(contents, form, order, kSource);
}

bool INVfile::save(const char* path, HeaderForm form) const {
  const Bytes bytes = build(form);
  return write_new_file(path, bytes.data(), bytes.length());
}
