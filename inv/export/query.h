// SQL queries over files without a database: the tables and views of schema.h, in memory.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "inv/base/json_text.h"
#include "inv/export/database.h"

namespace inv {

struct QueryResult {
  std::vector<std::string> columns;     // with unique names
  std::vector<std::vector<Json>> rows;  // null, integers, numbers and texts, as many as there are columns
};

// A value of a result as a text: empty for null.
std::string text_of_cell(const Json& cell);

// A query can only read what was added; it cannot reach another file or change anything. It fails if it takes
// too long or its result is too large for memory.
//
// Texts sort and compare as versions with "COLLATE version": see version_order.h.
class QueryDatabase {
 public:
  explicit QueryDatabase(std::chrono::seconds patience) : patience_(patience) {}

  // False if there is not enough memory; the reason, a clause, is in error().
  bool open();
  bool add(const Inventory& inventory);

  // The result of one statement. std::nullopt, with the reason in error(), if it is not a query or fails.
  // Nothing can be added after the first query.
  std::optional<QueryResult> ask(const std::string& sql);

  const std::string& error() const { return error_; }

 private:
  bool lock();
  std::optional<QueryResult> run(sqlite3_stmt* statement);
  std::nullopt_t refuse(const std::string& reason);
  std::nullopt_t fail(int status);

  Database database_;
  bool locked_ = false;
  std::chrono::seconds patience_;
  std::string error_;
};

}  // namespace inv
