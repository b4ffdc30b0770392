// Inventories as an SQLite database: schema.h has its tables and views.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "inv/export/prepared_scan.h"
#include "inv/export/sqlite.h"
#include "inv/file/inventory.h"

namespace inv {

// What became of a scan.
enum class Loaded {
  added,
  replaced,  // another of the same machine and time made way for it
  skipped,   // this one is there, or a better one of the same machine and time
  refused,   // it could not be put in, and nothing of it is there; error() says why
  broken,    // the database takes nothing more, and what was added since begin() is lost
};

// A scan that is to be put in, and who signed it: empty when no signature was asked for.
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
  // Opens the file, or creates it when it is missing. A database of the version before becomes one of this
  // version; one of another program is left as it is.
  bool open(const std::string& path);

  // The same tables and views, empty and in no file.
  bool open_in_memory();

  bool begin();
  // Puts a scan in. A damaged one takes nobody's place but that of another damaged one with fewer facts.
  Loaded add(const Arrival& arrival);
  Loaded add(const Inventory& inventory) { return add({PreparedScan(inventory), {}}); }
  bool commit();

  // Puts scans in, in a transaction of their own, with an outcome for each.
  bool add_all(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes);

  // For questions about what is in it.
  sqlite3* handle() const { return sqlite_.handle(); }

  // The most bytes of a text; by itself SQLite takes a billion.
  void limit_texts(int bytes) { sqlite_.limit_texts(bytes); }

  const std::string& error() const { return error_.empty() ? sqlite_.error() : error_; }

 private:
  bool prepare_connection();
  bool add_together(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes);
  bool add_each_alone(const std::vector<Arrival>& arrivals, std::vector<Outcome>& outcomes);
  void roll_back();
  // What is in after a refusal is for the caller to take back.
  Loaded put_in(const Arrival& arrival);
  bool remove(int64_t machine);
  bool add_machine(const Scan& scan, const std::string& signed_by);
  bool add_fact(int64_t machine, int64_t position, const PreparedScan::Row& fact);
  bool find_path(const PreparedScan::Row& fact, int64_t& id);
  bool number_of_new_path(const PreparedScan::Row& fact, int64_t& id);

  // Before the statements, which must be gone when it closes.
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
  Sqlite::Statement add_fact_;
  std::unordered_map<std::string, int64_t> path_numbers_;  // of paths that are in the database for sure
  std::string path_key_;
  std::string error_;
};

}  // namespace inv
