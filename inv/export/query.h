// SQL queries over files without a database: the tables and views of schema.h, in memory.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "inv/base/json_text.h"
#include "inv/export/database.h"

namespace inv {

// How much memory a database with its queries, and a result, may take: one and a quarter, and half, of the
// limit for a file, but never less than these.
constexpr uint64_t kLeastQueryMemory = 16u << 20;
constexpr uint64_t kLeastResultMemory = 4u << 20;

struct QueryResult {
  std::vector<std::string> columns;     // with unique names
  std::vector<std::vector<Json>> rows;  // null, integers, numbers and texts, as many as there are columns
  uint64_t size = 0;                    // the memory that the rows take, in bytes
};

// A value of a result as a text: empty for null.
std::string text_of_cell(const Json& cell);

// A query can only read what was added; it cannot reach another file or change anything. It fails if it takes
// too long or its result is too large for memory.
//
// Texts sort and compare as versions with "COLLATE version": see version_order.h.
class QueryDatabase {
 public:
  // `max_size` is the limit for a file. SQLite counts the memory of all its databases together, so only one
  // of these should be used at a time.
  explicit QueryDatabase(std::chrono::seconds patience, uint64_t max_size = kUsualMaxSize);
  QueryDatabase(const QueryDatabase&) = delete;
  QueryDatabase& operator=(const QueryDatabase&) = delete;
  ~QueryDatabase();

  // False if there is not enough memory; the reason, a clause, is in error().
  bool open();
  // The file's trees are given up, since the database takes their place in memory.
  bool add(Inventory& inventory);

  // The result of one statement. std::nullopt, with the reason in error(), if it is not a query or fails.
  // Nothing can be added after the first query.
  std::optional<QueryResult> ask(const std::string& sql);
  // Lowers the limit for later results by what the caller keeps of earlier ones, in bytes.
  void keep(uint64_t size) { result_memory_ -= std::min(size, result_memory_); }

  const std::string& error() const { return error_; }

 private:
  bool lock();
  std::optional<QueryResult> run(sqlite3_stmt* statement);
  std::nullopt_t refuse(const std::string& reason);
  std::nullopt_t fail(int status);

  Database database_;
  bool locked_ = false;
  std::chrono::seconds patience_;
  uint64_t memory_;
  uint64_t result_memory_;
  std::string error_;
};

}  // namespace inv
