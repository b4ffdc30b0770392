#include "inv/export/export.h"

#include <cstdlib>
#include <new>

#include "inv/base/json_text.h"
#include "inv/export/rows.h"
#include "inv/facts/facts.h"
#include "inv/facts/scan.h"

namespace inv {
namespace {

constexpr std::string_view kSchema = "velkaro-inventory/1";
// Rows are written in chunks of about this size.
constexpr size_t kPiece = 1 << 16;

Json json_attribute(const CatalogueFact* tag, const Attribute& attribute) {
  Json object = {{"name", json_text(attribute.name)}, {"value", json_text(attribute.value)}};
  const std::string_view unit = unit_of(tag, attribute);
  if (!unit.empty()) object["unit"] = json_text(unit);
  return object;
}

// An object without its closing brace.
std::string open_object(const Json& object) {
  std::string text = object.dump();
  text.pop_back();
  return text;
}

// One more member of it: a list without its closing bracket.
std::string open_list(const std::string& name) { return ",\"" + name + "\":["; }

}  // namespace

void Exporter::write(std::string_view text) {
  const std::string shown = options_.for_terminal ? printable_lines(text) : std::string();
  if (options_.for_terminal) text = shown;
  good_ = good_ && std::fwrite(text.data(), 1, text.size(), stream_) == text.size();
}

void Exporter::begin() {
  if (options_.format == ExportFormat::json) write("[");
  if (options_.format == ExportFormat::csv) write(csv_columns(rows_));
}

void Exporter::add(const Inventory& inventory) {
  ++added_;
  if (options_.table) return add_table(inventory);
  switch (options_.format) {
    case ExportFormat::json:
      add_json(inventory);
      break;
    case ExportFormat::ndjson:
      add_rows(NdjsonRows(scan_of(inventory)), inventory);
      break;
    case ExportFormat::csv:
      add_rows(CsvRows(scan_of(inventory), options_.formulas), inventory);
      break;
    case ExportFormat::zxml:
      add_zxml(inventory);
      break;
  }
}

void Exporter::add_rendered(std::string_view text) {
  if (options_.format == ExportFormat::json && added_ > 0) write(",");
  write(text);
  ++added_;
}

void Exporter::end() {
  if (options_.format == ExportFormat::json) write("\n]\n");
  good_ = good_ && std::fflush(stream_) == 0;
}

void Exporter::add_json(const Inventory& inventory) {
  const Scan scan = scan_of(inventory);
  const Json machine = {{"schema", kSchema},
                        {"file", scan.file},
                        {"machine", scan.machine},
                        {"name", scan.name},
                        {"timestamp", scan.timestamp},
                        {"scan_id", scan.id},
                        {"scanned_at", scan.time.empty() ? Json() : Json(scan.time)}};
  write(added_ == 1 ? "\n" : ",\n");
  write(open_object(machine) + open_list("trees"));
  bool first = true;
  for (const Content& content : inventory.contents) {
    if (!content.document) continue;
    if (!first) write(",");
    first = false;
    add_json_tree(content.document->top());
  }
  write("]}");
}

// Written in pieces, so that no tree of JSON objects has to fit into memory beside the document.
void Exporter::add_json_tree(Element top) {
  uint32_t open = 0;  // elements whose list of children is still open
  const auto close_to = [&](uint32_t depth) {
    for (; open > depth; --open) write("]}");
  };
  for (const Record& record : top.subtree()) {
    const bool follows_sibling = open > record.depth;
    close_to(record.depth);
    write(follows_sibling ? ",\n" : "\n");
    add_json_element(Element(&record));
    ++open;
  }
  close_to(0);
}

void Exporter::add_json_element(Element element) {
  write(open_object({{"name", json_text(element.name())}, {"value", json_text(element.value())}}));
  add_json_annotations(element.annotations());
  write(open_list("attributes"));
  const CatalogueFact* known = find_fact(element);
  const char* separator = "";
  for (const Attribute& attribute : element.attributes()) {
    write(separator + open_object(json_attribute(known, attribute)));
    add_json_annotations(attribute.annotations);
    write("}");
    separator = ",";
  }
  write("]" + open_list("children"));
}

void Exporter::add_json_annotations(const Range<Annotation>& annotations) {
  if (annotations.empty()) return;
  write(open_list("annotations"));
  const char* separator = "";
  for (const Annotation& annotation : annotations) {
    const Json object = {{"key", json_text(annotation.key)}, {"text", json_text(annotation.text)}};
    write(separator + object.dump());
    separator = ",";
  }
  write("]");
}

template <typename Rows>
void Exporter::add_rows(const Rows& rows, const Inventory& inventory) {
  std::string text;
  each_fact(inventory, [&](const Fact& fact) {
    rows.append(fact, text);
    write_piece(text);
  });
  write(text);
}

void Exporter::add_table(const Inventory& inventory) {
  std::string text;
  each_row(*options_.table, inventory, scan_of(inventory), [&](const std::vector<Cell>& cells) {
    if (options_.format == ExportFormat::csv) {
      append_csv_row(text, cells, options_.formulas);
    } else {
      append_ndjson_row(text, rows_, cells);
    }
    write_piece(text);
  });
  write(text);
}

void Exporter::write_piece(std::string& text) {
  if (text.size() < kPiece) return;
  write(text);
  text.clear();
}

void Exporter::add_zxml(const Inventory& inventory) {
  for (const Content& content : inventory.contents) {
    if (content.document) write(content.document->text());
  }
}

std::string render(const ExportOptions& options, const Inventory& inventory) {
  char* text = nullptr;
  size_t length = 0;
  std::FILE* stream = open_memstream(&text, &length);
  if (!stream) throw std::bad_alloc();
  Exporter exporter(options, stream);
  exporter.add(inventory);
  const bool whole = std::fclose(stream) == 0 && exporter.good();
  std::string rendered(text ? text : "", whole ? length : 0);
  std::free(text);
  if (!whole) throw std::bad_alloc();
  return rendered;
}

}  // namespace inv
