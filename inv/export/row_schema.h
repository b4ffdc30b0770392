// Describes exported rows to other programs: as JSON Schema, and as the table into which an engine loads the
// CSV.
#pragma once

#include <string>

#include "inv/export/columns.h"

namespace inv {

enum class SchemaFormat { json_schema, sql, duckdb, clickhouse, postgresql };

// Ends with a line end. The JSON Schema (draft 2020-12) is for one line of NDJSON.
std::string row_schema(const RowKind& rows, SchemaFormat format);

}  // namespace inv
