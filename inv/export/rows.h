// Facts as rows of NDJSON and CSV. docs/inv-tool.md has the columns, which do not change but by additions at
// the end.
#pragma once

#include <string>
#include <string_view>

#include "inv/facts/facts.h"
#include "inv/facts/scan.h"

namespace inv {

// The first line of CSV.
std::string csv_columns();

// A text as a field of CSV: in quotes where it has to be.
void append_csv(std::string& csv, std::string_view text);

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
  explicit CsvRows(const Scan& scan);
  void append(const Fact& fact, std::string& lines) const;

 private:
  std::string front_;
  std::string middle_;
};

}  // namespace inv
