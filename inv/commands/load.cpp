#include <algorithm>
#include <future>
#include <system_error>

#include "inv/commands/arguments.h"
#include "inv/commands/batch.h"
#include "inv/commands/file_list.h"
#include "inv/commands/in_order.h"
#include "inv/commands/secret_options.h"
#include "inv/commands/signature_options.h"
#include "inv/export/database.h"

namespace inv {
namespace {

// A transaction has at most this many files and inflated bytes: enough that writing to the disk takes little
// of the time, few enough that other loading processes get their turn.
constexpr size_t kMostFiles = 128;
constexpr uint64_t kMostBytes = uint64_t{1} << 26;

struct Options {
  std::string database;
  FileOptions files;
  size_t jobs = 1;
  std::string quarantine;
  SignatureOptions signature;
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

enum Fate : size_t { kLoaded, kReplaced, kSkipped, kRefused, kDamaged };

// An opened file, and what of it goes into the database.
struct Candidate {
  Opened opened;
  std::optional<PreparedScan> scan;
  uint64_t bytes = 0;
};

Candidate prepare(const std::string& path, const Options& options) {
  Candidate candidate = {open_quietly(path, options.max_size), std::nullopt};
  if (!candidate.opened.inventory) return candidate;
  Inventory& inventory = *candidate.opened.inventory;
  candidate.opened.masked = mask_unless_kept(options.keep_secrets, inventory);
  candidate.scan.emplace(inventory);
  candidate.bytes = weight_of(&inventory);
  // The trees are large, and nobody asks for them any more.
  inventory.contents.clear();
  return candidate;
}

// Takes opened files one by one and puts them into the database in batches, so that nobody waits for the
// database while a file is read. While one batch is written, the next one arrives.
class Loader {
 public:
  Loader(const Options& options, const SignatureCheck& signatures, Database& database, Tally& tally,
         int& status)
      : options_(options), signatures_(signatures), database_(database), tally_(tally), status_(status) {}

  // False if the database accepts nothing more.
  bool take(Candidate candidate) {
    const Opened& opened = candidate.opened;
    if (!complain_of(opened, status_)) {
      if (!options_.quarantine.empty()) set_aside(opened, options_.quarantine, status_);
      tally_.count(kRefused);
      return true;
    }
    std::optional<std::string> signer = signatures_.signer_of(opened.path, *opened.inventory, status_);
    if (!signer) {
      tally_.count(kRefused);
      return true;
    }
    masked += opened.masked;
    bytes_ += candidate.bytes;
    arrived_.push_back({std::move(*candidate.scan), std::move(*signer)});
    return (arrived_.size() < kMostFiles && bytes_ < kMostBytes) || put_in_arrived();
  }

  // Writes what is left.
  bool finish() { return put_in_arrived() && await(); }

  size_t masked = 0;  // secrets

 private:
  // Another thread writes it, and has the database to itself until await().
  struct Batch {
    std::vector<Arrival> arrivals;
    std::vector<Outcome> outcomes;
  };

  bool put_in_arrived() {
    if (!await()) return false;
    batch_ = {std::move(arrived_), {}};
    arrived_.clear();
    bytes_ = 0;
    if (!batch_.arrivals.empty()) written_ = start_writing();
    return true;
  }

  std::future<bool> start_writing() {
    const auto write = [this] { return database_.add_all(batch_.arrivals, batch_.outcomes); };
    try {
      if (options_.jobs > 1) return std::async(std::launch::async, write);
    } catch (const std::system_error&) {
      // The system allows no more threads: this one does the work when it waits for it.
    }
    return std::async(std::launch::deferred, write);
  }

  bool await() {
    if (!written_.valid()) return true;
    if (!written_.get()) return false;
    for (size_t i = 0; i < batch_.outcomes.size(); ++i) {
      tally_.count(fate_of(batch_.outcomes[i], batch_.arrivals[i].scan.scan()));
    }
    return true;
  }

  Fate fate_of(const Outcome& outcome, const Scan& scan) {
    switch (outcome.loaded) {
      case Loaded::added:
        return scan.damaged ? kDamaged : kLoaded;
      case Loaded::replaced:
        return kReplaced;
      case Loaded::skipped:
        return kSkipped;
      case Loaded::refused:
      case Loaded::broken:
        break;
    }
    complain(scan.file, outcome.reason);
    status_ = worse(status_, kUnusable);
    return kRefused;
  }

  const Options& options_;
  const SignatureCheck& signatures_;
  Database& database_;
  Tally& tally_;
  int& status_;
  std::vector<Arrival> arrived_;
  uint64_t bytes_ = 0;
  Batch batch_;
  std::future<bool> written_;  // the last, as it is waited for before the others go
};

bool load(const Options& options, const std::vector<std::string>& files, Loader& loader) {
  Progress progress(files.size());
  size_t done = 0;
  return in_order(
             files.size(), options.jobs, [&](size_t i) { return prepare(files[i], options); },
             [&](Candidate candidate) {
               progress.show(++done);
               return loader.take(std::move(candidate));
             },
             [](const Candidate& candidate) { return candidate.bytes; }, options.max_size) &&
         loader.finish();
}

int run(const Options& options) {
  if (is_named_like_file("DATABASE", options.database)) return kUnusable;
  int status = kDone;
  const std::vector<std::string> files = find_files(options.files, status);
  const std::optional<SignatureCheck> signatures = SignatureCheck::create(options.signature, files);
  if (!signatures) return kUnusable;
  Database database;
  Tally tally({"loaded", "replaced", "skipped", "refused", "damaged"});
  Loader loader(options, *signatures, database, tally, status);
  if (!database.open(options.database) || !load(options, files, loader)) {
    complain(options.database, database.error());
    status = kUnusable;
  }
  report_masked("load", loader.masked);
  tally.print();
  return status;
}

constexpr char kExamples[] =
    "  inv load macs.db *.inv\n"
    "  inv load --jobs 2 --quarantine bad macs.db spool    every *.inv in a folder\n"
    "  sqlite3 macs.db \"SELECT machine_name, version FROM software WHERE name = 'Safari'\"\n"
    "  sqlite3 macs.db \"SELECT * FROM volumes WHERE used_percent > 90\"\n";

}  // namespace

void add_load(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "load", "Load files into an SQLite database", kExamples);
  command.add_option("DATABASE", options->database, "The database; created if missing")->required();
  add_files(command, options->files);
  add_jobs(command, options->jobs);
  add_quarantine(command, options->quarantine);
  add_signature_options(command, options->signature);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
