#include "inv/file/inventory.h"

#include <algorithm>
#include <utility>

#include "inv/base/input_file.h"
#include "inv/file/inflate.h"
#include "inv/file/zxml_parser.h"

namespace inv {
namespace {

// How much the remaining sections of a file may take.
struct Allowance {
  uint64_t bytes;
  size_t lines;
};

void read_tree(const Section& section, bool big_endian, const Allowance& left, Content& content,
               Faults& faults) {
  Fault fault;
  std::optional<SectionText> text = read_section_text(section.data, big_endian, left.bytes, &fault);
  if (text) {
    const bool plain = text->plain();
    content.layout = text->layout;
    content.size = text->text.size();
    content.document = parse_text(std::move(text->text), &fault, left.lines);
    if (content.document) return;
    if (plain) fault.offset = fault.text_offset;
  }
  fault.offset += section.offset;
  fault.message = std::string(kind_name(section.kind)) + " section: " + fault.message;
  faults.push_back(std::move(fault));
}

void read_raw(const Section& section, uint64_t max_size, Content& content, Faults& faults) {
  Inflated inflated = inflate_stream(section.data, max_size);
  if (inflated.error.empty() && inflated.consumed < section.data.size()) {
    inflated.error = "there are bytes after the zlib stream";
  }
  if (!inflated.error.empty()) {
    faults.push_back({"raw data section: " + inflated.error, section.offset + inflated.consumed});
    return;
  }
  content.size = inflated.bytes.size();
  content.raw = std::move(inflated.bytes);
}

Content read_content(const Section& section, bool big_endian, const Allowance& left, Faults& faults) {
  Content content;
  // Its entry does not fit the file, which has already been reported as a fault.
  if (section.data.size() != section.length) return content;
  switch (section.kind) {
    case Section::Kind::snapshot:
    case Section::Kind::asset_info:
      read_tree(section, big_endian, left, content, faults);
      break;
    case Section::Kind::raw_data:
      read_raw(section, left.bytes, content, faults);
      break;
    case Section::Kind::other:
    case Section::Kind::unlisted:
      break;
  }
  return content;
}

}  // namespace

const Document* Inventory::first_tree(Section::Kind kind) const {
  for (size_t i = 0; i < contents.size(); ++i) {
    if (container->sections[i].kind == kind && contents[i].document) return &*contents[i].document;
  }
  return nullptr;
}

const std::string* Inventory::raw_data() const {
  for (const Content& content : contents) {
    if (content.raw) return &*content.raw;
  }
  return nullptr;
}

std::string_view Inventory::original(std::string_view shown) const {
  for (const Content& content : contents) {
    if (content.document) shown = content.document->original(shown);
  }
  return shown;
}

std::unique_ptr<Inventory> open_inventory(std::string file_name, std::string bytes, uint64_t max_size) {
  auto inventory = std::make_unique<Inventory>();
  inventory->file_name = std::move(file_name);
  inventory->bytes = std::move(bytes);
  inventory->container = read_container(inventory->bytes, max_size, inventory->faults);
  if (!inventory->container) return inventory;
  Allowance left = {max_size, most_lines(max_size)};
  for (const Section& section : inventory->container->sections) {
    Content content = read_content(section, inventory->container->big_endian, left, inventory->faults);
    left.bytes -= std::min(left.bytes, content.size.value_or(0));
    if (content.document) left.lines -= content.document->line_count();
    inventory->contents.push_back(std::move(content));
  }
  return inventory;
}

std::unique_ptr<Inventory> open_file(const std::string& path, uint64_t max_size, std::string* error) {
  // A small limit is meant for texts; the file around them may well be larger.
  std::optional<std::string> bytes = read_file(path, std::max(max_size, kUsualMaxSize), error);
  if (!bytes) return nullptr;
  return open_inventory(path == "-" ? "standard input" : path, std::move(*bytes), max_size);
}

uint64_t inflated_size(const Inventory& inventory) {
  uint64_t size = 0;
  for (const Content& content : inventory.contents) size += content.size.value_or(0);
  return size;
}

bool is_debug_file(const Inventory& inventory) {
  const auto has = [&](Section::Kind kind) {
    const std::vector<Section>& sections = inventory.container->sections;
    return std::any_of(sections.begin(), sections.end(),
                       [&](const Section& section) { return section.kind == kind; });
  };
  return has(Section::Kind::raw_data) && !has(Section::Kind::snapshot);
}

}  // namespace inv
