#include "inv/commands/result_text.h"

#include <algorithm>

#include "inv/base/utf8.h"
#include "inv/commands/secret_options.h"
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

std::string shown(const Json& cell) { return printable(text_of_cell(cell)); }

// Cells wider than this shift the rest of their row, so that a single one does not pad every row with blanks.
constexpr size_t kWidestCell = 200;

class TableWriter {
 public:
  TableWriter(const QueryResult& result, const TextSink& sink) : result_(result), sink_(sink) {
    for (size_t i = 0; i < result.columns.size(); ++i) {
      size_t width = columns(printable(result.columns[i]));
      for (const std::vector<Json>& row : result.rows) width = std::max(width, columns(shown(row[i])));
      widths_.push_back(std::min(width, kWidestCell));
      numbers_.push_back(has_numbers(result, i));
    }
  }

  void write() {
    write_line([&](size_t i) { return printable(result_.columns[i]); });
    for (const std::vector<Json>& row : result_.rows) write_line([&](size_t i) { return shown(row[i]); });
  }

 private:
  template <typename CellAt>
  void write_line(CellAt cell_at) {
    std::string line;
    for (size_t i = 0; i < widths_.size(); ++i) {
      if (i > 0) line += "  ";
      line += numbers_[i] ? pad_left(cell_at(i), widths_[i]) : pad_right(cell_at(i), widths_[i]);
    }
    line.resize(line.find_last_not_of(' ') + 1);
    sink_(line + "\n");
  }

  const QueryResult& result_;
  const TextSink& sink_;
  std::vector<size_t> widths_;
  std::vector<bool> numbers_;
};

// Lines end as RFC 4180 says.
void write_csv(const QueryResult& result, Formulas formulas, const TextSink& sink) {
  std::string line;
  const auto append_field = [&](size_t i, const std::string& text) {
    if (i > 0) line += ',';
    append_csv(line, text, formulas);
  };
  const auto end_line = [&] {
    sink(line + "\r\n");
    line.clear();
  };
  for (size_t i = 0; i < result.columns.size(); ++i) append_field(i, result.columns[i]);
  end_line();
  for (const std::vector<Json>& row : result.rows) {
    for (size_t i = 0; i < row.size(); ++i) append_field(i, text_of_cell(row[i]));
    end_line();
  }
}

void write_json(const QueryResult& result, const TextSink& sink) {
  JsonArray list(sink, 2);
  for (const std::vector<Json>& row : result.rows) {
    Json object = Json::object();
    for (size_t i = 0; i < row.size(); ++i) object[result.columns[i]] = row[i];
    list.add(object);
  }
  list.end();
  sink("\n");
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
  size_t masked = 0, opened = 0;
  for (const std::string& file : files) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, max_size, status);
    if (!inventory) continue;
    ++opened;
    masked += mask_unless_kept(keep_secrets, *inventory);
    if (!database.add(*inventory)) return complain_of_database(database);
  }
  report_masked(command, masked);
  return opened > 0;
}

void result_text(const QueryResult& result, const std::string& format, Formulas formulas,
                 const TextSink& sink) {
  if (format == "csv") return write_csv(result, formulas, sink);
  if (format == "json") return write_json(result, sink);
  TableWriter(result, sink).write();
}

}  // namespace inv
