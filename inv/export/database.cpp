#include "inv/export/database.h"

#include <sqlite3.h>

#include "inv/base/utf8.h"
#include "inv/export/schema.h"
#include "inv/facts/facts.h"
#include "inv/facts/overview.h"
#include "inv/file/machine.h"

namespace inv {
namespace {

constexpr int kSchemaVersion = 3;
// Another program may be reading; in milliseconds.
constexpr int kPatience = 10'000;

// The index over all paths is written to all over: 64 MiB of it stay in memory.
constexpr char kCache[] = "PRAGMA cache_size = -65536";

// SQLite creates no file for some names: the empty one, ":memory:" and those that begin with "file:". What is
// loaded there would be lost.
std::string file_name(const std::string& path) { return path.substr(0, 1) == "/" ? path : "./" + path; }

void bind_text(sqlite3_stmt* statement, int place, std::string_view text) {
  const std::string valid = to_utf8(text);
  sqlite3_bind_text(statement, place, valid.data(), static_cast<int>(valid.size()), SQLITE_TRANSIENT);
}

}  // namespace

void Database::CloseStatement::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Database::~Database() {
  // SQLite wants its statements closed first.
  remove_machine_.reset();
  add_machine_.reset();
  add_fact_.reset();
  sqlite3_close(handle_);
}

bool Database::open(const std::string& path) { return open_under(file_name(path)); }

bool Database::open_in_memory() { return open_under(":memory:"); }

bool Database::open_under(const std::string& name) {
  if (sqlite3_open(name.c_str(), &handle_) != SQLITE_OK) return fail();
  sqlite3_busy_timeout(handle_, kPatience);
  return check_version() && run("PRAGMA foreign_keys = ON") && run(kCache) &&
         run(std::string(kDatabaseSchema).append(kDatabaseViews).c_str()) &&
         prepare("DELETE FROM machines WHERE machine = ?1 AND timestamp = ?2", remove_machine_) &&
         prepare(
             "INSERT INTO machines (machine, timestamp, name, scanned, file, signed_by) VALUES (?1, ?2, ?3, "
             "?4, ?5, ?6)",
             add_machine_) &&
         prepare("INSERT INTO facts VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)", add_fact_);
}

bool Database::check_version() {
  Statement version;
  Statement tables;
  if (!prepare("PRAGMA user_version", version) || sqlite3_step(version.get()) != SQLITE_ROW) return fail();
  if (!prepare("SELECT count(*) FROM sqlite_master", tables) || sqlite3_step(tables.get()) != SQLITE_ROW)
    return fail();
  const int found = sqlite3_column_int(version.get(), 0);
  const bool empty = sqlite3_column_int(tables.get(), 0) == 0;
  if (found == kSchemaVersion || (found == 0 && empty)) return true;
  error_ = "is a database of another program, or of another version of inv";
  return false;
}

bool Database::begin() { return run("BEGIN IMMEDIATE"); }

bool Database::commit() { return run("COMMIT"); }

bool Database::add(const Inventory& inventory, const std::string& signed_by) {
  const std::string machine = machine_identity(inventory);
  const std::string timestamp = scan_timestamp(inventory);
  bind_text(remove_machine_.get(), 1, machine);
  bind_text(remove_machine_.get(), 2, timestamp);
  if (!step(remove_machine_)) return false;

  bind_text(add_machine_.get(), 1, machine);
  bind_text(add_machine_.get(), 2, timestamp);
  bind_text(add_machine_.get(), 3, machine_name(inventory));
  bind_text(add_machine_.get(), 4, readable_time(timestamp));
  bind_text(add_machine_.get(), 5, inventory.file_name);
  bind_text(add_machine_.get(), 6, signed_by);
  if (!step(add_machine_)) return false;

  const int64_t id = sqlite3_last_insert_rowid(handle_);
  int64_t position = 0;
  bool added = true;
  each_fact(inventory, [&](const Fact& fact) { added = added && add_fact(id, ++position, fact); });
  return added;
}

bool Database::add_fact(int64_t machine, int64_t position, const Fact& fact) {
  sqlite3_stmt* statement = add_fact_.get();
  sqlite3_bind_int64(statement, 1, machine);
  sqlite3_bind_int64(statement, 2, position);
  bind_text(statement, 3, fact.path);
  bind_text(statement, 4, fact.element);
  bind_text(statement, 5, fact.name);
  bind_text(statement, 6, fact.value);
  bind_text(statement, 7, fact.unit);
  bind_text(statement, 8, fact.base_value);
  return step(add_fact_);
}

bool Database::run(const char* sql) {
  return sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK || fail();
}

bool Database::prepare(const char* sql, Statement& statement) {
  sqlite3_stmt* prepared = nullptr;
  const int status = sqlite3_prepare_v2(handle_, sql, -1, &prepared, nullptr);
  statement.reset(prepared);
  return status == SQLITE_OK || fail();
}

bool Database::step(const Statement& statement) {
  const bool done = sqlite3_step(statement.get()) == SQLITE_DONE;
  if (!done) fail();
  sqlite3_reset(statement.get());
  return done;
}

bool Database::fail() {
  error_ = sqlite3_errmsg(handle_);
  return false;
}

}  // namespace inv
