// Facts as rows of NDJSON and CSV. docs/inv-tool.md has the columns, which do not change but by additions at
// the end.
#pragma once

#include <string>
#include <string_view>

#include "inv/export/columns.h"
#include "inv/export/tables.h"
#include "inv/facts/facts.h"
#include "inv/facts/scan.h"

namespace inv {

// The columns of a row for each fact.
const RowKind& fact_rows();

// The first line of CSV.
std::string csv_columns(const RowKind& rows);

// What a field of CSV does with a text that a spreadsheet would take for a formula: one that begins with "=",
// "+", "-", "@", a tab or a carriage return, and is no number.
enum class Formulas { kept, disarmed };

// A text as a field of CSV: in quotes where it has to be, and with "'" before a formula that is disarmed.
void append_csv(std::string& csv, std::string_view text, Formulas formulas = Formulas::kept);

// A line for each fact of a scan.
class NdjsonRows {
 public:
  explicit NdjsonRows(const Scan& scan);
  void append(const Fact& fact, std::string& lines) const;

 private:
  // What all rows of a scan have in common: at the front of a line, and behind the first columns.
  std::string front_;
  std::string middle_;
};

class CsvRows {
 public:
  CsvRows(const Scan& scan, Formulas formulas);
  void append(const Fact& fact, std::string& lines) const;

 private:
  void append_next(std::string& csv, std::string_view text) const;

  Formulas formulas_;
  std::string front_;
  std::string middle_;
};

// Appends a row of a typed table, whose cells are those of the columns. NDJSON has numbers, booleans and
// null; an empty cell of CSV is nothing.
void append_ndjson_row(std::string& lines, const RowKind& rows, const std::vector<Cell>& cells);
void append_csv_row(std::string& lines, const std::vector<Cell>& cells, Formulas formulas);

}  // namespace inv
