// What the rows of an export are, for other programs: as JSON Schema, and as the table that an engine loads
// the CSV into.
#pragma once

#include <string>

#include "inv/export/columns.h"

namespace inv {

enum class SchemaFormat { json_schema, sql, duckdb, clickhouse, postgresql };

// Ends with a line end. The JSON Schema is that of a line of NDJSON, of draft 2020-12.
std::string row_schema(const RowKind& rows, SchemaFormat format);

}  // namespace inv
