// Inventories as an SQLite database: schema.h has its tables and views.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "inv/export/prepared_scan.h"
#include "inv/export/sqlite.h"
#include "inv/file/inventory.h"

namespace inv {

// The outcome of adding a scan.
enum class Loaded {
  added,
  replaced,  // it replaced another of the same machine and time
  skipped,   // it is already there, or a better one of the same machine and time
  refused,   // it could not be added, and nothing of it is there; error() says why
  broken,    // the database accepts nothing more, and what was added since begin() is lost
};

// A scan to be added, and its signer: empty if no signature was required.
struct Arrival {
  PreparedScan scan;
  std::string signed_by;
};

struct Outcome {
  Loaded loaded;
  std::string reason;  // a clause; empty unless the scan was refused
};

// Every operation that fails returns false and leaves the reason, a clause, in error().
class Database {
 public:
  // Opens the file, or creates it if it is missing. A database of an earlier version is migrated; one of
  // another program is left alone.
  bool open(const std::string& path);

  // The same tables and views, empty and in memory.
  bool open_in_memory();

  bool begin();
  // Adds a scan. A damaged one only replaces another damaged one with fewer facts.
  Loaded add(const Arrival& arrival);
  Loaded add(const Inventory& inventory) { return add({PreparedScan(inventory), {}}); }
  bool commit();

  // Adds scans in one transaction, with an outcome for each.
  bool add_all(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes);

  // For queries.
  sqlite3* handle() const { return sqlite_.handle(); }

  // The maximum bytes of a text; SQLite's default is a billion.
  void limit_texts(int bytes) { sqlite_.limit_texts(bytes); }

  const std::string& error() const { return error_.empty() ? sqlite_.error() : error_; }

 private:
  bool prepare_connection();
  bool add_together(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes);
  bool add_each_alone(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes);
  // After a rollback it is unknown which paths and versions are in the database.
  void forget();
  void roll_back();
  // After a refusal, the caller must roll back what was added.
  Loaded put_in(const Arrival& arrival);
  bool remove(int64_t machine);
  bool add_machine(const Scan& scan, const std::string& signed_by);
  bool add_fact(int64_t machine, int64_t position, const PreparedScan::Row& fact);
  // The key of a version, unless it is there already.
  bool add_version(std::string_view version);
  bool find_path(const PreparedScan::Row& fact, int64_t& id);
  bool number_of_new_path(const PreparedScan::Row& fact, int64_t& id);

  // Declared before the statements, which must be destroyed before it closes.
  Sqlite sqlite_;
  Sqlite::Statement find_same_;
  Sqlite::Statement find_rival_;
  Sqlite::Statement is_damaged_;
  Sqlite::Statement count_facts_;
  Sqlite::Statement sign_;
  Sqlite::Statement remove_facts_;
  Sqlite::Statement remove_machine_;
  Sqlite::Statement add_machine_;
  Sqlite::Statement find_path_;
  Sqlite::Statement add_path_;
  Sqlite::Statement add_version_;
  Sqlite::Statement add_fact_;
  std::unordered_map<std::string, int64_t> path_numbers_;  // of paths that are certainly in the database
  std::unordered_set<std::string> versions_;               // that certainly have their keys there
  std::string path_key_;
  std::string error_;
};

}  // namespace inv
