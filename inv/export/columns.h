// The columns of exported rows: facts in NDJSON and CSV, and the typed tables. `inv schema` prints them.
#pragma once

#include <string_view>
#include <vector>

namespace inv {

// Raise it with every change of the columns: the second number if columns are added, the first if one is
// changed or removed.
constexpr std::string_view kRowsVersion = "1.0";

enum class CellType {
  text,
  integer,
  size,    // an integer that is not negative
  number,  // a decimal one
  boolean,
  time,  // in UTC: "2012-01-18T13:30:45Z"
  date,  // "2012-01-18"
};

struct RowColumn {
  std::string_view name;
  CellType type;
  bool always;            // every row has it; otherwise it can be empty in CSV and null in NDJSON
  std::string_view path;  // where the values come from; empty for facts about the scan or the row itself
  std::string_view description;
};

// The name of a kind of row, and its columns in order.
struct RowKind {
  std::string_view name;
  std::string_view description;
  std::vector<RowColumn> columns;
};

}  // namespace inv
