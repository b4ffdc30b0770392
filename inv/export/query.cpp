#include "inv/export/query.h"

#include <sqlite3.h>

#include <cstring>
#include <memory>
#include <set>

#include "inv/base/utf8.h"
#include "inv/base/version_order.h"

namespace inv {
namespace {

using Clock = std::chrono::steady_clock;

// The resources that a query may use. No fact is nearly as long as the longest text; comparing two texts that
// a query built cannot be interrupted, so their length is limited.
constexpr int kLongestText = 16 << 20;
constexpr int kLongestQuestion = 1 << 20;
constexpr int kLongestPattern = 1000;
// The heap's overhead per block.
constexpr size_t kBlockOverhead = 16;
// SQLite's steps between two checks of the clock.
constexpr int kStepsBetweenLooks = 10'000;

// Only these actions read. Others, such as ATTACH or PRAGMA, reach beyond the tables.
int allow_reading(void*, int action, const char*, const char* name, const char*, const char*) {
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_RECURSIVE:
      return SQLITE_OK;
    case SQLITE_FUNCTION:
      return name && std::strcmp(name, "load_extension") == 0 ? SQLITE_DENY : SQLITE_OK;
    default:
      return SQLITE_DENY;
  }
}

int is_too_late(void* deadline) { return Clock::now() > *static_cast<Clock::time_point*>(deadline) ? 1 : 0; }

std::string_view text_of(const void* bytes, int size) {
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

int collate_versions(void*, int one_size, const void* one, int other_size, const void* other) {
  return compare_versions(text_of(one, one_size), text_of(other, other_size));
}

Json cell_of(sqlite3_stmt* statement, int column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
      return nullptr;
    case SQLITE_INTEGER:
      return sqlite3_column_int64(statement, column);
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, column);
    default: {
      const void* bytes = sqlite3_column_blob(statement, column);
      return json_text(bytes ? text_of(bytes, sqlite3_column_bytes(statement, column)) : std::string_view());
    }
  }
}

// The memory that a value takes.
size_t size_of(const Json& cell) {
  if (!cell.is_string()) return sizeof cell;
  const auto& text = cell.get_ref<const std::string&>();
  return sizeof cell + sizeof text + text.size() + 2 * kBlockOverhead;
}

// Columns of the same name get numbers, since the members of an object need unique names.
std::vector<std::string> columns_of(sqlite3_stmt* statement) {
  std::vector<std::string> columns;
  std::set<std::string> used;
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    const char* given = sqlite3_column_name(statement, i);
    const std::string name = to_utf8(given ? given : "");
    std::string unique = name;
    for (int number = 2; !used.insert(unique).second; ++number) unique = name + "_" + std::to_string(number);
    columns.push_back(unique);
  }
  return columns;
}

// Whether there is anything other than blanks and semicolons.
bool has_more(const char* sql) { return sql[std::strspn(sql, " \t\r\n;")] != '\0'; }

struct FinishStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

}  // namespace

std::string text_of_cell(const Json& cell) {
  if (cell.is_null()) return "";
  return cell.is_string() ? cell.get<std::string>() : cell.dump();
}

QueryDatabase::QueryDatabase(std::chrono::seconds patience, uint64_t max_size)
    : patience_(patience),
      memory_(std::max(max_size + max_size / 4, kLeastQueryMemory)),
      result_memory_(std::max(max_size / 2, kLeastResultMemory)) {}

QueryDatabase::~QueryDatabase() { sqlite3_hard_heap_limit64(0); }

bool QueryDatabase::open() {
  sqlite3_hard_heap_limit64(static_cast<sqlite3_int64>(memory_));
  if (database_.open_in_memory() && database_.begin()) return true;
  error_ = database_.error();
  return false;
}

bool QueryDatabase::add(Inventory& inventory) {
  const Arrival arrival = {PreparedScan(inventory), {}};
  inventory.contents.clear();
  const Loaded outcome = database_.add(arrival);
  if (outcome != Loaded::refused && outcome != Loaded::broken) return true;
  error_ = database_.error();
  if (error_ == sqlite3_errstr(SQLITE_NOMEM)) {
    error_ = "out of memory: the files take more than " + std::to_string(memory_) +
             " bytes; inv load has room for more, and so has a larger --max-size";
  }
  return false;
}

bool QueryDatabase::lock() {
  if (locked_) return true;
  if (!database_.commit()) {
    error_ = database_.error();
    return false;
  }
  sqlite3* handle = database_.handle();
  // What a query puts aside counts as memory, and fills no disk.
  sqlite3_exec(handle, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
  sqlite3_create_collation(handle, "version", SQLITE_UTF8, nullptr, collate_versions);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kLongestText);
  sqlite3_limit(handle, SQLITE_LIMIT_SQL_LENGTH, kLongestQuestion);
  sqlite3_limit(handle, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, kLongestPattern);
  sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
  sqlite3_limit(handle, SQLITE_LIMIT_WORKER_THREADS, 0);
  sqlite3_set_authorizer(handle, allow_reading, nullptr);
  locked_ = true;
  return true;
}

std::optional<QueryResult> QueryDatabase::ask(const std::string& sql) {
  if (!lock()) return std::nullopt;
  sqlite3_stmt* prepared = nullptr;
  const char* rest = sql.c_str();
  const int status = sqlite3_prepare_v2(database_.handle(), sql.c_str(), -1, &prepared, &rest);
  const std::unique_ptr<sqlite3_stmt, FinishStatement> statement(prepared);
  if (status != SQLITE_OK) return fail(status);
  if (!statement) return refuse("there is no query in it");
  if (has_more(rest)) return refuse("it is more than one statement");
  return run(statement.get());
}

std::optional<QueryResult> QueryDatabase::run(sqlite3_stmt* statement) {
  Clock::time_point deadline = Clock::now() + patience_;
  sqlite3_progress_handler(database_.handle(), kStepsBetweenLooks, is_too_late, &deadline);
  QueryResult result = {columns_of(statement), {}, 0};
  int status = sqlite3_step(statement);
  for (; status == SQLITE_ROW && result.size <= result_memory_; status = sqlite3_step(statement)) {
    std::vector<Json> row;
    const int columns = sqlite3_column_count(statement);
    row.reserve(static_cast<size_t>(columns));
    result.size += sizeof row + kBlockOverhead;
    for (int i = 0; i < columns; ++i) {
      row.push_back(cell_of(statement, i));
      result.size += size_of(row.back());
    }
    result.rows.push_back(std::move(row));
  }
  sqlite3_progress_handler(database_.handle(), 0, nullptr, nullptr);
  if (result.size > result_memory_)
    return refuse("its result takes more than " + std::to_string(result_memory_) +
                  " bytes; a larger --max-size allows more");
  if (status != SQLITE_DONE) return fail(status);
  return result;
}

std::nullopt_t QueryDatabase::refuse(const std::string& reason) {
  error_ = reason;
  return std::nullopt;
}

std::nullopt_t QueryDatabase::fail(int status) {
  if (status == SQLITE_NOMEM)
    return refuse("out of memory for this query: it takes more than " + std::to_string(memory_) +
                  " bytes with the files; a larger --max-size allows more");
  if (status == SQLITE_INTERRUPT)
    return refuse("it takes longer than " + std::to_string(patience_.count()) + " s");
  const std::string reason = to_utf8(sqlite3_errmsg(database_.handle()));
  const bool denied = status == SQLITE_AUTH || reason.rfind("not authorized", 0) == 0;
  return refuse(denied ? "only SELECT is allowed" : reason);
}

}  // namespace inv
