// Facts as rows of NDJSON and CSV. docs/inv-tool.md lists the columns, which change only by additions at the
// end.
#pragma once

#include <string>
#include <string_view>

#include "inv/export/columns.h"
#include "inv/export/tables.h"
#include "inv/facts/facts.h"
#include "inv/facts/scan.h"

namespace inv {

// The columns of a fact's row.
const RowKind& fact_rows();

// The first line of CSV.
std::string csv_columns(const RowKind& rows);

// What happens in CSV to a text that a spreadsheet would take for a formula: one that begins with "=", "+",
// "-", "@", a tab or a carriage return, and is not a number.
enum class Formulas { kept, disarmed };

// A text as a CSV field: quoted if necessary, and with "'" before a formula that is disarmed.
void append_csv(std::string& csv, std::string_view text, Formulas formulas = Formulas::kept);

// A line for each fact of a scan.
class NdjsonRows {
 public:
  explicit NdjsonRows(const Scan& scan);
  void append(const Fact& fact, std::string& lines) const;

 private:
  // What all rows of a scan have in common: at the front of a line, and after the first columns.
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

// Appends a row of a typed table, with one cell per column. NDJSON has numbers, booleans and null; an empty
// cell is an empty field in CSV.
void append_ndjson_row(std::string& lines, const RowKind& rows, const std::vector<Cell>& cells);
void append_csv_row(std::string& lines, const std::vector<Cell>& cells, Formulas formulas);

}  // namespace inv
