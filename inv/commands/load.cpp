#include "inv/commands/secret_options.h"
#include "inv/commands/signature_options.h"
#include "inv/export/database.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

// This many files are one transaction: enough that writing to the disk takes little of the time, few enough
// that an interrupted run has kept most of what it did.
constexpr size_t kBatch = 500;

struct Options {
  std::string database;
  std::vector<std::string> files;
  SignatureOptions signature;
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

// A bar on standard error, for a person at a terminal.
class Progress {
 public:
  explicit Progress(size_t total) : total_(total), terminal_(error_terminal()) {}
  ~Progress() { draw("\r\x1B[K"); }

  void show(size_t done) {
    const size_t percent = done * 100 / total_;
    if (percent == shown_) return;
    shown_ = percent;
    const size_t filled = percent * kCells / 100;
    draw("\r[" + std::string(filled, '#') + std::string(kCells - filled, '.') + "] " + std::to_string(done) +
         " of " + std::to_string(total_));
  }

 private:
  static constexpr size_t kCells = 40;

  void draw(const std::string& text) const {
    if (terminal_.interactive) std::fwrite(text.data(), 1, text.size(), stderr);
  }

  size_t total_;
  size_t shown_ = 0;
  Terminal terminal_;
};

// What becomes of the files.
struct Outcome {
  int status = kDone;
  size_t masked = 0;  // secrets
};

// False when the database cannot be written to; a file that cannot be loaded is reported and left out.
bool load_file(const std::string& path, const Options& options, const SignatureCheck& signatures,
               Database& database, Outcome& outcome) {
  const std::unique_ptr<Inventory> inventory = open_for_command(path, options.max_size, outcome.status);
  if (!inventory) return true;
  const std::optional<std::string> signer = signatures.signer_of(path, *inventory, outcome.status);
  if (!signer) return true;
  outcome.masked += mask_unless_kept(options.keep_secrets, *inventory);
  return database.add(*inventory, *signer);
}

bool load(const Options& options, const SignatureCheck& signatures, Database& database, Outcome& outcome) {
  Progress progress(options.files.size());
  for (size_t i = 0; i < options.files.size(); ++i) {
    if (i % kBatch == 0 && i > 0 && !database.commit()) return false;
    if (i % kBatch == 0 && !database.begin()) return false;
    if (!load_file(options.files[i], options, signatures, database, outcome)) return false;
    progress.show(i + 1);
  }
  return database.commit();
}

int run(const Options& options) {
  const std::optional<SignatureCheck> signatures = SignatureCheck::create(options.signature, options.files);
  if (!signatures) return kUnusable;
  Outcome outcome;
  Database database;
  const bool loaded = database.open(options.database) && load(options, *signatures, database, outcome);
  tell_masked("load", outcome.masked);
  if (loaded) return outcome.status;
  complain(options.database, database.error());
  return kUnusable;
}

constexpr char kExamples[] =
    "  inv load macs.db *.inv\n"
    "  sqlite3 macs.db \"SELECT machine_name, version FROM software WHERE name = 'Safari'\"\n"
    "  sqlite3 macs.db \"SELECT * FROM volumes WHERE used_percent > 90\"\n";

}  // namespace

void add_load(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "load", "Load files into an SQLite database", kExamples);
  command.add_option("DATABASE", options->database, "The database; created if missing")->required();
  command.add_option("FILE", options->files, "Inventory files; - is standard input")->required();
  add_signature_options(command, options->signature);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
