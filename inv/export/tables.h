// Typed tables: rows for one kind of thing, with the values that the catalogue of facts chooses. A row
// includes what an extended scan adds to the thing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inv/export/columns.h"
#include "inv/facts/scan.h"
#include "inv/file/inventory.h"

namespace inv {

// How a value from a file becomes a cell. A value of another form leaves the cell empty.
enum class CellForm {
  text,
  integer,
  number,
  yes_no,   // "1" and "0"
  bytes,    // a size in any unit; the exact one if the file has it
  seconds,  // "00000002030405.000000:000"
  time,     // "20120118153045.000000+120"
  date,     // "20120118", in the calendar of the Mac's user
};

struct TableColumn {
  std::string_view name;
  CellForm form;
  std::string_view source;  // as table_values.h explains it
  std::string_view path;    // the same for people
  std::string_view description;
};

struct TypedTable {
  std::string_view name;
  std::string_view description;
  // The patterns of its rows (see rows_of); a second one adds rows whose numbers the first one lacks.
  std::vector<std::string_view> rows;
  std::vector<TableColumn> columns;
};

// All tables, in the order of the catalogue of facts.
const std::vector<TypedTable>& typed_tables();
// Null if there is no table of this name.
const TypedTable* find_table(std::string_view name);
// Their names in order.
std::vector<std::string_view> table_names();

// The columns of its rows: first those of all tables (the row's scan, and its path in the snapshot), then its
// own.
RowKind row_kind_of(const TypedTable& table);

// std::nullopt if the file has no such value. Numbers are decimal, booleans "1" and "0".
using Cell = std::optional<std::string>;

// Calls visit for each row of a file, with a cell for each column.
void each_row(const TypedTable& table, const Inventory& inventory, const Scan& scan,
              const std::function<void(const std::vector<Cell>&)>& visit);

}  // namespace inv
