// Questions in SQL about files that no database holds: the tables and views of schema.h, in memory.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "inv/base/json_text.h"
#include "inv/export/database.h"

namespace inv {

struct QueryResult {
  std::vector<std::string> columns;     // no two of one name
  std::vector<std::vector<Json>> rows;  // null, integers, numbers and texts, as many as there are columns
};

// A value of an answer as a text: nothing for null.
std::string text_of_cell(const Json& cell);

// A question can only read what was added: nothing of it reaches another file or changes anything. It ends
// with an error when it takes too long, or when its result is larger than memory should hold.
//
// Texts sort and compare as versions with "COLLATE version": see version_order.h.
class QueryDatabase {
 public:
  explicit QueryDatabase(std::chrono::seconds patience) : patience_(patience) {}

  // False when there is no memory for it; the reason, a clause, is in error().
  bool open();
  bool add(const Inventory& inventory);

  // What one statement answers. None, with the reason in error(), when it is no question or fails. Nothing
  // can be added behind the first question.
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
