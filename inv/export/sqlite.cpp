#include "inv/export/sqlite.h"

#include <sqlite3.h>

#include "inv/base/utf8.h"

namespace inv {
namespace {

// How long to wait for others that are loading, in milliseconds.
constexpr int kPatience = 60'000;

// For some names SQLite creates no file of that name: the empty one, ":memory:" and those that begin with
// "file:". Anything loaded there would be lost.
std::string file_name(const std::string& path) { return path.substr(0, 1) == "/" ? path : "./" + path; }

}  // namespace

void Sqlite::Statement::Close::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Sqlite::~Sqlite() { sqlite3_close_v2(handle_); }

bool Sqlite::open(const std::string& path, Access access) {
  const int flags =
      access == Access::look ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  // One thread at a time uses a connection: locks would take a tenth of the time of loading.
  constexpr int kWithoutLocks = SQLITE_OPEN_NOMUTEX;
  if (!check(sqlite3_open_v2(file_name(path).c_str(), &handle_, flags | kWithoutLocks, nullptr)))
    return false;
  return check(sqlite3_busy_timeout(handle_, kPatience));
}

bool Sqlite::open_in_memory() { return check(sqlite3_open(":memory:", &handle_)); }

bool Sqlite::run(const std::string& sql) {
  return check(sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr));
}

bool Sqlite::prepare(const char* sql, Statement& statement) {
  sqlite3_stmt* prepared = nullptr;
  const int status = sqlite3_prepare_v2(handle_, sql, -1, &prepared, nullptr);
  statement.handle_.reset(prepared);
  return check(status);
}

bool Sqlite::bind(const Statement& statement, int parameter, std::string_view text) {
  if (is_utf8(text)) {
    return check(sqlite3_bind_text64(statement.handle_.get(), parameter, text.data() ? text.data() : "",
                                     text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  }
  const std::string repaired = to_utf8(text);
  return check(sqlite3_bind_text64(statement.handle_.get(), parameter, repaired.data(), repaired.size(),
                                   SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool Sqlite::bind(const Statement& statement, int parameter, int64_t number) {
  return check(sqlite3_bind_int64(statement.handle_.get(), parameter, number));
}

bool Sqlite::lend(const Statement& statement, int parameter, std::string_view text) {
  return check(sqlite3_bind_text64(statement.handle_.get(), parameter, text.data() ? text.data() : "",
                                   text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

bool Sqlite::bind_null(const Statement& statement, int parameter) {
  return check(sqlite3_bind_null(statement.handle_.get(), parameter));
}

bool Sqlite::execute(const Statement& statement) {
  int status = SQLITE_ROW;
  while (status == SQLITE_ROW) status = sqlite3_step(statement.handle_.get());
  const bool done = status == SQLITE_DONE || check(status);
  sqlite3_reset(statement.handle_.get());
  return done;
}

std::optional<int64_t> Sqlite::first_integer(const Statement& statement, bool& good) {
  std::optional<int64_t> found;
  const int status = sqlite3_step(statement.handle_.get());
  if (status == SQLITE_ROW && sqlite3_column_type(statement.handle_.get(), 0) != SQLITE_NULL) {
    found = sqlite3_column_int64(statement.handle_.get(), 0);
  }
  good = status == SQLITE_ROW || status == SQLITE_DONE || check(status);
  sqlite3_reset(statement.handle_.get());
  return found;
}

std::optional<int64_t> Sqlite::first_integer(const char* sql, bool& good) {
  Statement statement;
  good = prepare(sql, statement);
  return good ? first_integer(statement, good) : std::nullopt;
}

int64_t Sqlite::last_inserted() const { return sqlite3_last_insert_rowid(handle_); }

int64_t Sqlite::changes() const { return sqlite3_changes(handle_); }

bool Sqlite::in_transaction() const { return sqlite3_get_autocommit(handle_) == 0; }

void Sqlite::limit_texts(int bytes) { sqlite3_limit(handle_, SQLITE_LIMIT_LENGTH, bytes); }

bool Sqlite::check(int status) {
  if (status != SQLITE_OK) error_ = sqlite3_errmsg(handle_);
  return status == SQLITE_OK;
}

}  // namespace inv
