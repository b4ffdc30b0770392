#include "inv/export/database.h"

#include "inv/base/version_order.h"
#include "inv/export/database_file.h"
#include "inv/facts/overview.h"

namespace inv {
namespace {

// Writes to the indices are scattered: keep 64 MiB of the file in memory.
constexpr char kCache[] = "PRAGMA cache_size = -65536";

// How many paths' numbers are cached: those of a whole fleet, except for names that only one Mac has.
constexpr size_t kMostPaths = 100'000;
// The same for versions.
constexpr size_t kMostVersions = 100'000;

bool names_version(std::string_view name) {
  constexpr std::string_view kEnd = "-version";
  return name == kEnd.substr(1) ||
         (name.size() >= kEnd.size() && name.substr(name.size() - kEnd.size()) == kEnd);
}

}  // namespace

bool Database::open(const std::string& path) {
  return open_database_file(path, sqlite_, &error_) && prepare_connection();
}

bool Database::open_in_memory() { return open_database_in_memory(sqlite_) && prepare_connection(); }

bool Database::prepare_connection() {
  // Every number that a row refers to has just been looked up or made, so SQLite need not check it.
  return sqlite_.run("PRAGMA foreign_keys = OFF") && sqlite_.run(kCache) &&
         sqlite_.prepare("SELECT id FROM machines WHERE scan_id = ?1", find_same_) &&
         sqlite_.prepare(
             "SELECT id FROM machines WHERE machine = ?1"
             " AND (scanned_at = ?2 OR (scan_id IS NULL AND timestamp = ?3))",
             find_rival_) &&
         sqlite_.prepare("SELECT damaged FROM machines WHERE id = ?1", is_damaged_) &&
         sqlite_.prepare("SELECT count(*) FROM fact_values WHERE machine_id = ?1", count_facts_) &&
         sqlite_.prepare("UPDATE machines SET signed_by = ?2 WHERE id = ?1 AND ?2 <> ''", sign_) &&
         sqlite_.prepare("DELETE FROM fact_values WHERE machine_id = ?1", remove_facts_) &&
         sqlite_.prepare("DELETE FROM machines WHERE id = ?1", remove_machine_) &&
         sqlite_.prepare(
             "INSERT INTO machines (machine, timestamp, name, scanned, file, signed_by, scan_id, "
             "scanned_at, damaged) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)",
             add_machine_) &&
         sqlite_.prepare("SELECT id FROM paths WHERE path = ?1 AND element = ?2 AND section = ?3",
                         find_path_) &&
         sqlite_.prepare(
             "INSERT INTO paths (path, element, section, name, kind, element_index) "
             "VALUES (?1, ?2, ?3, ?4, ?5, ?6)",
             add_path_) &&
         sqlite_.prepare("INSERT OR IGNORE INTO version_keys VALUES (?1, ?2)", add_version_) &&
         sqlite_.prepare("INSERT INTO fact_values VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)", add_fact_);
}

bool Database::begin() { return sqlite_.run("BEGIN IMMEDIATE"); }

bool Database::commit() {
  error_.clear();
  return sqlite_.run("COMMIT");
}

Loaded Database::add(const Arrival& arrival) {
  error_.clear();
  if (!sqlite_.run("SAVEPOINT scan")) return Loaded::broken;
  const Loaded outcome = put_in(arrival);
  if (outcome != Loaded::refused) return sqlite_.run("RELEASE scan") ? outcome : Loaded::broken;
  // The rollback also undoes the paths and versions that were added.
  forget();
  const std::string reason = sqlite_.error();
  const bool alone =
      sqlite_.in_transaction() && sqlite_.run("ROLLBACK TO scan") && sqlite_.run("RELEASE scan");
  error_ = reason;
  return alone ? Loaded::refused : Loaded::broken;
}

// A savepoint copies every page that a scan touches, which is nearly all of the index by path. So there are
// savepoints only after a scan was refused.
bool Database::add_all(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes) {
  error_.clear();
  if (!begin()) return false;
  if (add_together(arrivals, outcomes)) return commit();
  roll_back();
  return begin() && add_each_alone(arrivals, outcomes) && commit();
}

bool Database::add_together(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes) {
  outcomes.clear();
  for (const Arrival& arrival : arrivals) {
    outcomes.push_back({put_in(arrival), {}});
    if (outcomes.back().loaded == Loaded::refused) return false;
  }
  return true;
}

bool Database::add_each_alone(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes) {
  outcomes.clear();
  for (const Arrival& arrival : arrivals) {
    const Loaded loaded = add(arrival);
    if (loaded == Loaded::broken) return false;
    outcomes.push_back({loaded, loaded == Loaded::refused ? error() : std::string()});
  }
  return true;
}

void Database::forget() {
  path_numbers_.clear();
  versions_.clear();
}

void Database::roll_back() {
  forget();
  if (sqlite_.in_transaction()) sqlite_.run("ROLLBACK");
}

Loaded Database::put_in(const Arrival& arrival) {
  const Scan& scan = arrival.scan.scan();
  bool good = sqlite_.bind(find_same_, 1, scan.id);
  const std::optional<int64_t> same = good ? sqlite_.first_integer(find_same_, good) : std::nullopt;
  if (!good) return Loaded::refused;
  if (same) {
    good =
        sqlite_.bind(sign_, 1, *same) && sqlite_.bind(sign_, 2, arrival.signed_by) && sqlite_.execute(sign_);
    return good ? Loaded::skipped : Loaded::refused;
  }

  good = sqlite_.bind(find_rival_, 1, scan.machine) && sqlite_.bind(find_rival_, 2, scan.time) &&
         sqlite_.bind(find_rival_, 3, scan.timestamp);
  const std::optional<int64_t> rival = good ? sqlite_.first_integer(find_rival_, good) : std::nullopt;
  if (good && rival && scan.damaged) {
    const auto about_rival = [&](const Sqlite::Statement& statement) {
      good = good && sqlite_.bind(statement, 1, *rival);
      return good ? sqlite_.first_integer(statement, good).value_or(0) : 0;
    };
    const bool whole = about_rival(is_damaged_) == 0;
    const auto facts = static_cast<int64_t>(arrival.scan.facts());
    if (good && (whole || about_rival(count_facts_) >= facts)) return Loaded::skipped;
  }
  if (!good || (rival && !remove(*rival)) || !add_machine(scan, arrival.signed_by)) return Loaded::refused;

  const int64_t id = sqlite_.last_inserted();
  int64_t position = 0;
  const auto add_next = [&](const PreparedScan::Row& fact) { return add_fact(id, ++position, fact); };
  if (!arrival.scan.each_row(add_next)) return Loaded::refused;
  return rival ? Loaded::replaced : Loaded::added;
}

bool Database::remove(int64_t machine) {
  const auto execute = [&](const Sqlite::Statement& statement) {
    return sqlite_.bind(statement, 1, machine) && sqlite_.execute(statement);
  };
  return execute(remove_facts_) && execute(remove_machine_);
}

bool Database::add_machine(const Scan& scan, const std::string& signed_by) {
  const Sqlite::Statement& row = add_machine_;
  const bool timed = scan.time.empty() ? sqlite_.bind_null(row, 8) : sqlite_.bind(row, 8, scan.time);
  return timed && sqlite_.bind(row, 1, scan.machine) && sqlite_.bind(row, 2, scan.timestamp) &&
         sqlite_.bind(row, 3, scan.name) && sqlite_.bind(row, 4, readable_time(scan.timestamp)) &&
         sqlite_.bind(row, 5, scan.file) && sqlite_.bind(row, 6, signed_by) &&
         sqlite_.bind(row, 7, scan.id) && sqlite_.bind(row, 9, scan.damaged ? 1 : 0) && sqlite_.execute(row);
}

bool Database::add_fact(int64_t machine, int64_t position, const PreparedScan::Row& fact) {
  const Sqlite::Statement& row = add_fact_;
  int64_t path = 0;
  const bool numbered = fact.is_number ? sqlite_.lend(row, 7, fact.value) : sqlite_.bind_null(row, 7);
  if (names_version(fact.name) && !add_version(fact.value)) return false;
  return numbered && find_path(fact, path) && sqlite_.bind(row, 1, machine) &&
         sqlite_.bind(row, 2, position) && sqlite_.bind(row, 3, path) && sqlite_.lend(row, 4, fact.value) &&
         sqlite_.lend(row, 5, fact.unit) && sqlite_.lend(row, 6, fact.base_value) && sqlite_.execute(row);
}

bool Database::add_version(std::string_view version) {
  if (version.size() > kLongestVersion) return true;
  if (versions_.size() >= kMostVersions) versions_.clear();
  if (!versions_.emplace(version).second) return true;
  const std::string key = version_key(version);
  return sqlite_.lend(add_version_, 1, version) && sqlite_.lend(add_version_, 2, key) &&
         sqlite_.execute(add_version_);
}

bool Database::find_path(const PreparedScan::Row& fact, int64_t& id) {
  path_key_ = fact.path_key;
  const auto known = path_numbers_.find(path_key_);
  if (known != path_numbers_.end()) {
    id = known->second;
    return true;
  }
  if (!number_of_new_path(fact, id)) return false;
  if (path_numbers_.size() >= kMostPaths) path_numbers_.clear();
  path_numbers_.emplace(path_key_, id);
  return true;
}

bool Database::number_of_new_path(const PreparedScan::Row& fact, int64_t& id) {
  bool good = true;
  const auto bind_key = [&](const Sqlite::Statement& statement) {
    return sqlite_.bind(statement, 1, fact.path) && sqlite_.bind(statement, 2, fact.element) &&
           sqlite_.bind(statement, 3, fact.section);
  };
  const std::optional<int64_t> found =
      bind_key(find_path_) ? sqlite_.first_integer(find_path_, good) : (good = false, std::nullopt);
  if (!good) return false;
  if (found) {
    id = *found;
    return true;
  }
  if (!bind_key(add_path_) || !sqlite_.bind(add_path_, 4, fact.name) ||
      !sqlite_.bind(add_path_, 5, fact.kind) || !sqlite_.bind(add_path_, 6, fact.index) ||
      !sqlite_.execute(add_path_))
    return false;
  id = sqlite_.last_inserted();
  return true;
}

}  // namespace inv
