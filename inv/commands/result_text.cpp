#include "inv/commands/result_text.h"

#include "inv/base/utf8.h"
#include "inv/commands/secret_options.h"
#include "inv/show/table.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

bool complain_of_database(const QueryDatabase& database) {
  complain("database", database.error());
  return false;
}

// Columns that contain only numbers are right-aligned.
bool has_numbers(const QueryResult& result, size_t column) {
  bool found = false;
  for (const std::vector<Json>& row : result.rows) {
    if (!row[column].is_number() && !row[column].is_null()) return false;
    found = found || row[column].is_number();
  }
  return found;
}

std::string table_of(const QueryResult& result) {
  std::vector<Column> columns;
  for (size_t i = 0; i < result.columns.size(); ++i) {
    columns.push_back({printable(result.columns[i]), has_numbers(result, i)});
  }
  Table table(std::move(columns));
  for (const std::vector<Json>& row : result.rows) {
    std::vector<std::string> cells;
    for (const Json& cell : row) cells.push_back(printable(text_of_cell(cell)));
    table.add(std::move(cells));
  }
  return table.text();
}

// Lines end as RFC 4180 says.
std::string csv_of(const QueryResult& result, Formulas formulas) {
  std::string csv;
  const auto append_field = [&](size_t i, const std::string& text) {
    if (i > 0) csv += ',';
    append_csv(csv, text, formulas);
  };
  for (size_t i = 0; i < result.columns.size(); ++i) append_field(i, result.columns[i]);
  for (const std::vector<Json>& row : result.rows) {
    csv += "\r\n";
    for (size_t i = 0; i < row.size(); ++i) append_field(i, text_of_cell(row[i]));
  }
  return csv + "\r\n";
}

std::string json_of(const QueryResult& result) {
  Json list = Json::array();
  for (const std::vector<Json>& row : result.rows) {
    Json object = Json::object();
    for (size_t i = 0; i < row.size(); ++i) object[result.columns[i]] = row[i];
    list.push_back(std::move(object));
  }
  return list.dump(2) + "\n";
}

}  // namespace

void add_timeout(CLI::App& command, unsigned& patience) {
  command.add_option("--timeout", patience, "Give up on a query after this many seconds (60)")
      ->type_name("SECONDS")
      ->check(CLI::Range(1u, 86'400u).description(""));
}

bool open_for_questions(const char* command, QueryDatabase& database, const std::vector<std::string>& files,
                        uint64_t max_size, bool keep_secrets, int& status) {
  if (!database.open()) return complain_of_database(database);
  size_t masked = 0;
  for (const std::string& file : files) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, max_size, status);
    if (!inventory) continue;
    masked += mask_unless_kept(keep_secrets, *inventory);
    if (!database.add(*inventory)) return complain_of_database(database);
  }
  report_masked(command, masked);
  return true;
}

std::string result_text(const QueryResult& result, const std::string& format, Formulas formulas) {
  if (format == "csv") return csv_of(result, formulas);
  return format == "json" ? json_of(result) : table_of(result);
}

}  // namespace inv
