#include "inv/export/database_file.h"

#include <sqlite3.h>

#include <algorithm>
#include <string_view>

#include "inv/base/version_order.h"
#include "inv/export/schema.h"
#include "inv/facts/facts.h"
#include "inv/file/timestamp.h"

namespace inv {
namespace {

// "VKLI", which the file has in its header.
constexpr int64_t kApplication = 0x564B4C49;
constexpr int64_t kVersion = 5;
// This one lacks the keys of versions and the columns of views that show them.
constexpr int64_t kVersionWithoutKeys = 4;
// These two have the same tables, and the second more views.
constexpr int64_t kVersionsBefore[] = {2, 3};

// Of a new file, in bytes: twice the usual ones. The index by path, where each scan adds to nearly every
// page, takes a fifth less time and room.
constexpr char kPageSize[] = "PRAGMA page_size = 8192";

enum class Owner { nobody, this_version, version_without_keys, versions_before, another };

// Earlier versions did not mark their databases, so recognise them by their tables.
constexpr char kTablesBefore[] =
    "SELECT (SELECT group_concat(name) FROM pragma_table_info('machines')) ="
    " 'id,machine,timestamp,name,scanned,file,signed_by' AND"
    " (SELECT group_concat(name) FROM pragma_table_info('facts')) ="
    " 'machine_id,position,path,element,name,value,unit,base_value'";

// Within a transaction, or what is read first may be of the time before another process created the tables.
Owner owner_of(Sqlite& sqlite, bool& good) {
  const auto integer = [&](const char* sql) {
    return good ? sqlite.first_integer(sql, good).value_or(0) : 0;
  };
  good = true;
  const int64_t application = integer("PRAGMA application_id");
  const int64_t version = integer("PRAGMA user_version");
  const int64_t tables = integer("SELECT count(*) FROM sqlite_master");
  if (application == kApplication && version == kVersion) return Owner::this_version;
  if (application == kApplication && version == kVersionWithoutKeys) return Owner::version_without_keys;
  if (application != 0) return Owner::another;
  if (version == 0 && tables == 0) return Owner::nobody;
  const bool is_before = std::count(std::begin(kVersionsBefore), std::end(kVersionsBefore), version) > 0;
  return is_before && integer(kTablesBefore) == 1 ? Owner::versions_before : Owner::another;
}

Owner owner_now(Sqlite& sqlite, bool& good) {
  good = sqlite.run("BEGIN");
  const Owner owner = good ? owner_of(sqlite, good) : Owner::another;
  if (sqlite.in_transaction()) good = sqlite.run("ROLLBACK") && good;
  return owner;
}

// Looks without changing anything. What cannot be looked into, such as a file that is not there yet,
// is for the opening itself to report.
bool is_foreign(const std::string& path) {
  Sqlite sqlite;
  bool good = false;
  return sqlite.open(path, Sqlite::Access::look) && owner_now(sqlite, good) == Owner::another && good;
}

std::string_view text_of(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text ? std::string_view(text, static_cast<size_t>(sqlite3_value_bytes(value))) : std::string_view();
}

void give(sqlite3_context* context, std::string_view text) {
  if (text.empty()) return sqlite3_result_null(context);
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

// The columns of a fact's row, derived from its path and value, as migration.sql needs them.
void time_in_utc(sqlite3_context* context, int, sqlite3_value** arguments) {
  give(context, utc_of(text_of(arguments[0]), text_of(arguments[1])));
}

void number_of_value(sqlite3_context* context, int, sqlite3_value** arguments) {
  const std::string_view value = text_of(arguments[0]);
  give(context, is_number(value) ? value : "");
}

// The path without what follows the colons, or only these parts, separated by slashes.
std::string part_of_path(std::string_view path, bool indices) {
  std::string kind, index;
  for (size_t start = 0; start <= path.size();) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string_view segment = path.substr(start, end - start);
    const size_t colon = std::min(segment.find(':'), segment.size());
    if (start > 0) kind += '/';
    kind += segment.substr(0, colon);
    if (colon < segment.size()) index.append(index.empty() ? "" : "/").append(segment.substr(colon + 1));
    start = end + 1;
  }
  return indices ? index : kind;
}

void give_text(sqlite3_context* context, const std::string& text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void kind_of_path(sqlite3_context* context, int, sqlite3_value** arguments) {
  give_text(context, part_of_path(text_of(arguments[0]), false));
}

void index_of_path(sqlite3_context* context, int, sqlite3_value** arguments) {
  give_text(context, part_of_path(text_of(arguments[0]), true));
}

void key_of_version(sqlite3_context* context, int, sqlite3_value** arguments) {
  give(context, version_key(text_of(arguments[0])));
}

using Function = void (*)(sqlite3_context*, int, sqlite3_value**);

// The keys of versions, and the views, which show them.
bool add_versions_and_views(Sqlite& sqlite) {
  sqlite3_create_function(sqlite.handle(), "version_key", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                          key_of_version, nullptr, nullptr);
  return sqlite.run(std::string(kDatabaseVersions).append(kDatabaseViews));
}

bool migrate(Sqlite& sqlite) {
  const struct {
    const char* name;
    int arguments;
    Function function;
  } functions[] = {{"time_in_utc", 2, time_in_utc},
                   {"number_of_value", 1, number_of_value},
                   {"kind_of_path", 1, kind_of_path},
                   {"index_of_path", 1, index_of_path}};
  for (const auto& [name, arguments, function] : functions) {
    sqlite3_create_function(sqlite.handle(), name, arguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                            function, nullptr, nullptr);
  }
  const auto run = [&](std::string_view sql) { return sqlite.run(std::string(sql)); };
  return run(kDatabaseSetAside) && run(kDatabaseSchema) && run(kDatabaseMigration) &&
         add_versions_and_views(sqlite);
}

bool add_keys(Sqlite& sqlite) {
  return sqlite.run(std::string(kDatabaseViewsDropped)) && add_versions_and_views(sqlite);
}

bool create(Sqlite& sqlite) {
  return sqlite.run(std::string(kDatabaseSchema)) && add_versions_and_views(sqlite);
}

bool mark(Sqlite& sqlite) {
  return sqlite.run("PRAGMA application_id = " + std::to_string(kApplication) +
                    "; PRAGMA user_version = " + std::to_string(kVersion));
}

bool prepare_tables(Sqlite& sqlite, Owner owner) {
  switch (owner) {
    case Owner::nobody:
      return create(sqlite) && mark(sqlite);
    case Owner::version_without_keys:
      return add_keys(sqlite) && mark(sqlite);
    case Owner::versions_before:
      return migrate(sqlite) && mark(sqlite);
    case Owner::this_version:
      return true;
    case Owner::another:
      break;
  }
  return false;
}

}  // namespace

bool open_database_file(const std::string& path, Sqlite& sqlite, std::string* refusal) {
  constexpr char kRefusal[] = "is a database of another program, or of another version of inv";
  if (is_foreign(path)) {
    *refusal = kRefusal;
    return false;
  }
  bool good = false;
  if (!sqlite.open(path, Sqlite::Access::change)) return false;
  // Most databases need no change, and others may continue loading into them.
  if (owner_now(sqlite, good) == Owner::this_version && good) return true;
  if (!sqlite.run(kPageSize) || !sqlite.run("BEGIN EXCLUSIVE")) return false;
  const Owner owner = owner_of(sqlite, good);
  if (good && owner == Owner::another) *refusal = kRefusal;
  return good && prepare_tables(sqlite, owner) && sqlite.run("COMMIT");
}

bool open_database_in_memory(Sqlite& sqlite) { return sqlite.open_in_memory() && create(sqlite); }

}  // namespace inv
