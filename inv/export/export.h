// An inventory in formats for other programs. docs/inv-tool.md describes the schema, which changes only by
// additions.
#pragma once

#include <cstdio>
#include <string>

#include "inv/export/rows.h"
#include "inv/file/inventory.h"

namespace inv {

enum class ExportFormat { json, ndjson, csv, zxml };

struct ExportOptions {
  ExportFormat format = ExportFormat::json;
  Formulas formulas = Formulas::kept;  // in CSV
  bool for_terminal = false;           // makes texts printable; see utf8.h
  const TypedTable* table = nullptr;   // its rows instead of facts; only for NDJSON and CSV
};

// Writes file after file to a stream: JSON as one array with an object for each file, one element per line;
// NDJSON and CSV with a line for each fact or each row of a table; zxml as the texts of the trees, one after
// the other. Bytes that are not UTF-8 become U+FFFD, except in zxml, which is the text itself.
class Exporter {
 public:
  Exporter(const ExportOptions& options, std::FILE* stream)
      : options_(options),
        rows_(options.table ? row_kind_of(*options.table) : fact_rows()),
        stream_(stream) {}

  void begin();
  void add(const Inventory& inventory);
  // The same with a file's render().
  void add_rendered(std::string_view text);
  void end();
  // False if something could not be written.
  bool good() const { return good_; }

 private:
  void add_json(const Inventory& inventory);
  void add_json_tree(Element top);
  // Leaves its list of children open.
  void add_json_element(Element element);
  // As one more member of an object that is left open; nothing when there are none.
  void add_json_annotations(const Range<Annotation>& annotations);
  template <typename Rows>
  void add_rows(const Rows& rows, const Inventory& inventory);
  void add_table(const Inventory& inventory);
  // In pieces, so that not all rows have to fit into memory.
  void write_piece(std::string& text);
  void add_zxml(const Inventory& inventory);
  void write(std::string_view text);

  ExportOptions options_;
  RowKind rows_;  // for NDJSON and CSV
  std::FILE* stream_;
  size_t added_ = 0;
  bool good_ = true;
};

// What an Exporter writes for a file, in memory.
std::string render(const ExportOptions& options, const Inventory& inventory);

}  // namespace inv
