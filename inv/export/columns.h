// What the rows of an export consist of: the facts of NDJSON and CSV, and the typed tables. `inv schema`
// prints it.
#pragma once

#include <string_view>
#include <vector>

namespace inv {

// Raised with every change of the columns: the number after the point when some are added. None is changed or
// removed without another number before it.
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
  bool always;  // no row lacks it; else it can be empty in CSV, and null in NDJSON
  std::string_view
      path;  // where the values come from; empty for what is said of the scan or of the row itself
  std::string_view description;
};

// What rows are called, and their columns in order.
struct RowKind {
  std::string_view name;
  std::string_view description;
  std::vector<RowColumn> columns;
};

}  // namespace inv
