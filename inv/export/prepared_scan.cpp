#include "inv/export/prepared_scan.h"

#include "inv/base/utf8.h"

namespace inv {

PreparedScan::PreparedScan(const Inventory& inventory) : scan_(scan_of(inventory)) {
  // Growing would copy everything again and again; what is not filled takes no memory.
  constexpr size_t kUsualPath = 64;
  size_t lines = 0, bytes = 0;
  for (const Content& content : inventory.contents) {
    if (!content.document) continue;
    lines += content.document->line_count();
    bytes += content.document->text().size();
  }
  facts_.reserve(lines);
  texts_.reserve(2 * bytes + kUsualPath * lines);
  each_fact(inventory, [this](const Fact& fact) { add(fact); });
}

void PreparedScan::add(const Fact& fact) {
  const size_t start = texts_.size();
  Lengths lengths = {};
  lengths.element = append(fact.element);
  lengths.path = lengths.element + append(fact.path.substr(fact.element.size()));
  // An attribute's name may contain slashes, so only the element shows where it begins.
  texts_.append("\n").append(std::to_string(lengths.element)).append("\n").append(fact.section);
  lengths.path_key = static_cast<uint32_t>(texts_.size() - start);
  lengths.name = append(fact.name);
  lengths.kind = append(fact.kind);
  lengths.index = append(fact.index);
  lengths.value = append(fact.value);
  lengths.unit = append(fact.unit);
  lengths.base_value = append(fact.base_value);
  lengths.section = fact.section;
  lengths.is_number = is_number(fact.value);
  facts_.push_back(lengths);
}

uint32_t PreparedScan::append(std::string_view text) {
  const size_t start = texts_.size();
  if (is_utf8(text)) {
    texts_.append(text);
  } else {
    texts_.append(to_utf8(text));
  }
  // A line, and a path, is far shorter than this can count.
  return static_cast<uint32_t>(texts_.size() - start);
}

PreparedScan::Row PreparedScan::row_at(size_t start, const Lengths& fact) const {
  const auto next = [&](size_t length) {
    start += length;
    return std::string_view(texts_).substr(start - length, length);
  };
  Row row = {};
  row.path_key = next(fact.path_key);
  row.path = row.path_key.substr(0, fact.path);
  row.element = row.path.substr(0, fact.element);
  row.section = fact.section;
  row.name = next(fact.name);
  row.kind = next(fact.kind);
  row.index = next(fact.index);
  row.value = next(fact.value);
  row.unit = next(fact.unit);
  row.base_value = next(fact.base_value);
  row.is_number = fact.is_number;
  return row;
}

}  // namespace inv
