// Inventories as an SQLite database: schema.h has its tables and views.
#pragma once

#include <memory>
#include <string>

#include "inv/file/inventory.h"

struct sqlite3;
struct sqlite3_stmt;

namespace inv {

// Every operation that fails returns false and leaves the reason, a clause, in error().
class Database {
 public:
  Database() = default;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  // Opens the file, or creates it when it is missing. A database of another program is refused.
  bool open(const std::string& path);

  // The same tables and views, empty and in no file.
  bool open_in_memory();

  bool begin();
  // Puts a scan in; one of the same machine and timestamp is replaced by it. `signed_by` is empty when no
  // signature was asked for.
  bool add(const Inventory& inventory, const std::string& signed_by = {});
  bool commit();

  // For questions about what is in it.
  sqlite3* handle() const { return handle_; }

  const std::string& error() const { return error_; }

 private:
  struct CloseStatement {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, CloseStatement>;

  bool open_under(const std::string& name);
  bool check_version();
  bool run(const char* sql);
  bool prepare(const char* sql, Statement& statement);
  // Runs a prepared statement that returns no rows, and makes it ready to run again.
  bool step(const Statement& statement);
  bool add_fact(int64_t machine, int64_t position, const struct Fact& fact);
  bool fail();

  sqlite3* handle_ = nullptr;
  Statement remove_machine_;
  Statement add_machine_;
  Statement add_fact_;
  std::string error_;
};

}  // namespace inv
