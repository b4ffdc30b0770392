#include "inv/export/query.h"

#include "inv/base/utf8.h"
#include "inv/commands/file_list.h"
#include "inv/commands/result_text.h"
#include "inv/commands/secret_options.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::string sql;
  FileOptions files;
  std::string format = "table";
  unsigned patience = kUsualPatience;
  bool csv_safe = false;
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

int run(const Options& options) {
  int status = kDone;
  const std::vector<std::string> files = find_files(options.files, status);
  QueryDatabase database{std::chrono::seconds(options.patience), options.max_size};
  if (!open_for_questions("query", database, files, options.max_size, options.keep_secrets, status))
    return kUnusable;
  const std::optional<QueryResult> result = database.ask(options.sql);
  if (!result) {
    complain("query", database.error());
    return kUnusable;
  }
  const Formulas formulas = options.csv_safe ? Formulas::disarmed : Formulas::kept;
  ResultPrinter printer;
  result_text(*result, options.format, formulas, [&](std::string_view piece) { printer.add(piece); });
  return worse(status, printer.finish());
}

constexpr char kExamples[] =
    "  inv query \"SELECT machine_name, version FROM software WHERE name = 'Safari'\" *.inv\n"
    "  inv query \"SELECT * FROM software WHERE name = 'Safari' AND version < '6.0' COLLATE version\" *.inv\n"
    "  inv query 'SELECT machine_name, name, used_percent FROM volumes ORDER BY 3 DESC' --format csv *.inv\n"
    "  inv query \"SELECT name, sql FROM sqlite_master WHERE type = 'view'\" MAC.inv   what there is to "
    "ask\n";

}  // namespace

void add_query(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "query", "Run an SQL query over files", kExamples);
  command.add_option("SQL", options->sql, "One SELECT over the tables and views of inv load")->required();
  add_files(command, options->files);
  limit_to(
      command.add_option("-f,--format", options->format, "table, csv or json (table)")->type_name("NAME"),
      {"table", "csv", "json"});
  add_csv_safe(command, options->csv_safe);
  add_timeout(command, options->patience);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
