#include <algorithm>

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
constexpr size_t kMostFiles = 64;
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

// Takes opened files one by one and puts them into the database in batches, so that nobody waits for the
// database while a file is read.
class Loader {
 public:
  Loader(const Options& options, const SignatureCheck& signatures, Database& database, Tally& tally,
         int& status)
      : options_(options), signatures_(signatures), database_(database), tally_(tally), status_(status) {}

  // False if the database accepts nothing more.
  bool take(Opened opened) {
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
    bytes_ += opened.inventory->bytes.size() + inflated_size(*opened.inventory);
    waiting_.push_back({std::move(opened.inventory), std::move(*signer)});
    return (waiting_.size() < kMostFiles && bytes_ < kMostBytes) || finish();
  }

  size_t masked = 0;  // secrets

  // Loads the files that are waiting.
  bool finish() {
    if (waiting_.empty()) return true;
    if (!database_.begin()) return false;
    std::vector<Fate> fates;
    for (const Waiting& scan : waiting_) {
      const Loaded outcome = database_.add(*scan.inventory, scan.signer);
      if (outcome == Loaded::broken) return false;
      fates.push_back(fate_of(outcome, *scan.inventory));
    }
    if (!database_.commit()) return false;
    for (const Fate fate : fates) tally_.count(fate);
    waiting_.clear();
    bytes_ = 0;
    return true;
  }

 private:
  struct Waiting {
    std::unique_ptr<Inventory> inventory;
    std::string signer;
  };

  Fate fate_of(Loaded outcome, const Inventory& inventory) {
    switch (outcome) {
      case Loaded::added:
        return inventory.faults.empty() ? kLoaded : kDamaged;
      case Loaded::replaced:
        return kReplaced;
      case Loaded::skipped:
        return kSkipped;
      case Loaded::refused:
      case Loaded::broken:
        break;
    }
    complain(inventory.file_name, database_.error());
    status_ = worse(status_, kUnusable);
    return kRefused;
  }

  const Options& options_;
  const SignatureCheck& signatures_;
  Database& database_;
  Tally& tally_;
  int& status_;
  std::vector<Waiting> waiting_;
  uint64_t bytes_ = 0;
};

Opened open_masked(const std::string& path, const Options& options) {
  Opened opened = open_quietly(path, options.max_size);
  if (opened.inventory) opened.masked = mask_unless_kept(options.keep_secrets, *opened.inventory);
  return opened;
}

bool load(const Options& options, const std::vector<std::string>& files, Loader& loader) {
  Progress progress(files.size());
  size_t done = 0;
  return in_order(
             files.size(), options.jobs, [&](size_t i) { return open_masked(files[i], options); },
             [&](Opened opened) {
               progress.show(++done);
               return loader.take(std::move(opened));
             }) &&
         loader.finish();
}

int run(const Options& options) {
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
  tell_masked("load", loader.masked);
  tally.tell();
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
