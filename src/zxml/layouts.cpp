// The encoded forms of a tree. The scanner itself uses whole, compressed ones only.
#include <algorithm>

#include "zxml/deflate.h"
#include "zxml/text_writer.h"
#include "zxml/zXML.h"

namespace {

constexpr char kSource[] = "zXML";

}  // namespace

Bytes Tag::compressed_text() const {
  size_t length = 0;
  const Text text = written_text(*this, false, false, &length);
  return deflate_buffer(text.get(), text_size(), kSource);
}

Bytes InventoryTree::serialize(Layout layout) {
  switch (layout) {
    case Layout::whole_plain:
      return whole_plain();
    case Layout::whole_compressed:
      return whole_compressed();
    case Layout::split_plain:
      return split_plain();
    case Layout::split_compressed:
      return split_compressed();
  }
  return Bytes();
}

Bytes InventoryTree::whole_compressed() const {
  size_t length = 0;
  const Text text = written_text(root_, false, false, &length);
  Bytes bytes = deflate_buffer(text.get(), length, kSource);
  bytes.append(kWholeCompressedEnd.data(), kWholeCompressedEnd.size());
  return bytes;
}

Bytes InventoryTree::whole_plain() const {
  size_t length = 0;
  const Text text = written_text(root_, false, false, &length);
  const size_t counted = root_.text_size();
  Bytes bytes(counted + kWholePlainEnd.size());
  bytes.append(text.get(), std::min(length, counted));
  while (bytes.length() < counted) bytes.append_byte(0);
  bytes.append(kWholePlainEnd.data(), kWholePlainEnd.size());
  return bytes;
}

void InventoryTree::add_section_record(const std::string& name, size_t length) {
  const uint32_t offset = sections_.empty() ? 0 : sections_.back().offset + sections_.back().length;
  sections_.push_back({offset, static_cast<uint32_t>(length), name});
}

std::string InventoryTree::section_index() const {
  std::string index;
  for (const Section& section : sections_) {
    index += "[" + section.name + "]\noffset=" + std::to_string(section.offset) +
             "\nlength=" + std::to_string(section.length) + "\n";
  }
  return index;
}

void InventoryTree::append_split_end(Bytes& bytes, size_t index_offset, std::string_view end) const {
  static_assert(sizeof(uint32_t) == kIndexOffsetSize);
  bytes.append_number(static_cast<uint32_t>(index_offset), byte_order_flag_ != 0);
  bytes.append(end.data(), end.size());
}

Bytes InventoryTree::split_plain() {
  sections_.clear();
  add_section_record(std::string(kRootPart), root_.text_size(true));
  for (const auto& child : top().children()) add_section_record(child->name(), child->text_size());
  size_t length = 0;
  const Text text = written_text(root_, true, false, &length);
  const std::string index = section_index();
  Bytes bytes(length + index.size() + kIndexOffsetSize + kSplitPlainEnd.size());
  bytes.append(text.get(), length);
  bytes.append(index.data(), index.size());
  append_split_end(bytes, length, kSplitPlainEnd);
  return bytes;
}

Bytes InventoryTree::split_compressed() {
  sections_.clear();
  Bytes bytes;
  const auto add_section = [&](const std::string& name, const Bytes& section) {
    add_section_record(name, section.length());
    bytes.append(section.data(), section.length());
  };
  size_t length = 0;
  const Text header = written_text(root_, true, true, &length);
  add_section(std::string(kRootPart), deflate_buffer(header.get(), root_.text_size(true), kSource));
  for (const auto& child : top().children()) add_section(child->name(), child->compressed_text());
  const size_t index_offset = bytes.length();
  const std::string index = section_index();
  const Bytes compressed_index = deflate_buffer(index.data(), index.size(), kSource);
  bytes.append(compressed_index.data(), compressed_index.length());
  append_split_end(bytes, index_offset, kSplitCompressedEnd);
  return bytes;
}
