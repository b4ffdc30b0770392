#include <map>

#include "inv/commands/table_option.h"
#include "inv/export/row_schema.h"
#include "inv/export/rows.h"
#include "inv/export/tables.h"

namespace inv {
namespace {

const std::map<std::string, SchemaFormat> kFormats = {{"json-schema", SchemaFormat::json_schema},
                                                      {"sql", SchemaFormat::sql},
                                                      {"duckdb", SchemaFormat::duckdb},
                                                      {"clickhouse", SchemaFormat::clickhouse},
                                                      {"postgresql", SchemaFormat::postgresql}};

struct Options {
  std::string table;
  std::string format = "json-schema";
};

int run(const Options& options) {
  const TypedTable* table = find_table(options.table);
  return print_result(row_schema(table ? row_kind_of(*table) : fact_rows(), kFormats.at(options.format)));
}

constexpr char kExamples[] =
    "  inv schema                               the facts of export --format ndjson and csv\n"
    "  inv schema --table disks                 the rows of export --table disks\n"
    "  inv schema --table disks --format sql | sqlite3 fleet.db\n";

}  // namespace

void add_schema(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "schema", "Print what the rows of an export are", kExamples);
  add_table_option(command, options->table);
  limit_to(command
               .add_option("-f,--format", options->format,
                           "json-schema, sql, duckdb, clickhouse or postgresql (json-schema)")
               ->type_name("NAME"),
           {"json-schema", "sql", "duckdb", "clickhouse", "postgresql"});
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
