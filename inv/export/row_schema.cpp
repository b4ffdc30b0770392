#include "inv/export/row_schema.h"

#include <algorithm>
#include <iterator>

#include "inv/base/json_text.h"

namespace inv {
namespace {

// The names of a type.
struct TypeNames {
  CellType type;
  const char* json;
  const char* json_format;  // null if there is none
  const char* sql;          // SQLite understands them too
  const char* duckdb;
  const char* clickhouse;
  const char* postgresql;
};

constexpr TypeNames kTypes[] = {
    {CellType::text, "string", nullptr, "TEXT", "VARCHAR", "String", "text"},
    {CellType::integer, "integer", nullptr, "BIGINT", "BIGINT", "Int64", "bigint"},
    {CellType::size, "integer", nullptr, "BIGINT", "BIGINT", "Int64", "bigint"},
    {CellType::number, "number", nullptr, "DOUBLE PRECISION", "DOUBLE", "Float64", "double precision"},
    {CellType::boolean, "boolean", nullptr, "BOOLEAN", "BOOLEAN", "Bool", "boolean"},
    {CellType::time, "string", "date-time", "TIMESTAMP WITH TIME ZONE", "TIMESTAMPTZ", "DateTime('UTC')",
     "timestamptz"},
    {CellType::date, "string", "date", "DATE", "DATE", "Date", "date"},
};

const TypeNames& names_of(CellType type) {
  return *std::find_if(std::begin(kTypes), std::end(kTypes),
                       [type](const TypeNames& names) { return names.type == type; });
}

Json property_of(const RowColumn& column) {
  const TypeNames& names = names_of(column.type);
  Json property = {{"description", column.description}};
  property["type"] = column.always ? Json(names.json) : Json({names.json, "null"});
  if (names.json_format) property["format"] = names.json_format;
  if (column.type == CellType::size) property["minimum"] = 0;
  if (!column.path.empty()) property["path"] = column.path;
  return property;
}

std::string json_schema(const RowKind& rows) {
  Json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                 {"$id", "urn:velkaro:inventory:" + std::string(rows.name) + ":" + std::string(kRowsVersion)},
                 {"version", kRowsVersion},
                 {"title", rows.name},
                 {"description", "A row is " + std::string(rows.description) + "."},
                 {"type", "object"},
                 {"required", Json::array()},
                 {"properties", Json::object()}};
  for (const RowColumn& column : rows.columns) {
    schema["required"].push_back(column.name);
    schema["properties"][std::string(column.name)] = property_of(column);
  }
  return schema.dump(2) + "\n";
}

std::string type_in(SchemaFormat format, const RowColumn& column) {
  const TypeNames& names = names_of(column.type);
  if (format == SchemaFormat::clickhouse) {
    return column.always ? names.clickhouse : "Nullable(" + std::string(names.clickhouse) + ")";
  }
  const char* name = format == SchemaFormat::duckdb       ? names.duckdb
                     : format == SchemaFormat::postgresql ? names.postgresql
                                                          : names.sql;
  return std::string(name) + (column.always ? " NOT NULL" : "");
}

std::string create_table(const RowKind& rows, SchemaFormat format) {
  std::string sql =
      "-- Version " + std::string(kRowsVersion) + ". A row is " + std::string(rows.description) + ".\n";
  sql.append("CREATE TABLE ").append(rows.name).append(" (\n");
  for (const RowColumn& column : rows.columns) {
    const bool is_last = &column == &rows.columns.back();
    sql.append("  ")
        .append(column.name)
        .append(" ")
        .append(type_in(format, column))
        .append(is_last ? "" : ",");
    sql.append("  -- ").append(column.description).append("\n");
  }
  return sql + (format == SchemaFormat::clickhouse ? ") ENGINE = MergeTree ORDER BY (machine, scan_id);\n"
                                                   : ");\n");
}

}  // namespace

std::string row_schema(const RowKind& rows, SchemaFormat format) {
  return format == SchemaFormat::json_schema ? json_schema(rows) : create_table(rows, format);
}

}  // namespace inv
