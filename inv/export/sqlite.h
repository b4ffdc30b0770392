// A connection to SQLite.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace inv {

// Every operation that fails returns false and leaves the reason, a clause, in error().
class Sqlite {
 public:
  // A prepared statement, which must not outlive its connection.
  class Statement {
   public:
    explicit operator bool() const { return handle_ != nullptr; }

   private:
    friend class Sqlite;
    struct Close {
      void operator()(sqlite3_stmt* statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Close> handle_;
  };

  Sqlite() = default;
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;
  ~Sqlite();

  // How to open the file: for changes, the first of which creates it if it is missing, or only for reading.
  enum class Access { change, look };
  bool open(const std::string& path, Access access);
  // Opens a database in memory.
  bool open_in_memory();

  // Runs several statements without results.
  bool run(const std::string& sql);
  bool prepare(const char* sql, Statement& statement);

  // Parameters are numbered from 1, columns from 0. Bytes that are not UTF-8 become U+FFFD. A text that is
  // too long for SQLite is a failure.
  bool bind(const Statement& statement, int parameter, std::string_view text);
  bool bind(const Statement& statement, int parameter, int64_t number);
  // The same for a text that is UTF-8 for sure and stays where it is until the statement has run.
  bool lend(const Statement& statement, int parameter, std::string_view text);
  bool bind_null(const Statement& statement, int parameter);

  // Runs a statement to its end, and makes it ready to run again.
  bool execute(const Statement& statement);
  // The first row's first column, which is NULL or an integer; std::nullopt for NULL or no row. `good`
  // becomes false if it failed.
  std::optional<int64_t> first_integer(const Statement& statement, bool& good);
  std::optional<int64_t> first_integer(const char* sql, bool& good);

  int64_t last_inserted() const;
  // The number of rows that the last statement changed.
  int64_t changes() const;
  // Whether a transaction is open: some failures, such as a full disk, end it.
  bool in_transaction() const;
  // The most bytes of a text; by itself SQLite takes a billion.
  void limit_texts(int bytes);

  const std::string& error() const { return error_; }
  sqlite3* handle() const { return handle_; }

 private:
  bool check(int status);

  sqlite3* handle_ = nullptr;
  std::string error_;
};

}  // namespace inv
