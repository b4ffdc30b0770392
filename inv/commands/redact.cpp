#include "inv/redact/redact.h"

#include <sodium.h>

#include "inv/commands/command.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::string file;
  std::string output;
  RedactOptions redact;
  uint64_t max_size = kUsualMaxSize;
};

// Empty when the machine provides no random numbers.
std::string random_key() {
  if (sodium_init() < 0) return std::string();
  std::string key(32, '\0');
  randombytes_buf(key.data(), key.size());
  return key;
}

void warn_of_name(const Redaction& redaction, const std::string& path) {
  if (redaction.pseudonyms.occurs_in(path.substr(path.rfind('/') + 1))) {
    complain(path, "the file's own name identifies the machine");
  }
}

int run(Options& options) {
  if (options.redact.key.empty()) options.redact.key = random_key();
  if (options.redact.key.empty()) {
    complain("redact", "no random numbers are available for a key");
    return kUnusable;
  }
  int status = kDone;
  const std::unique_ptr<Inventory> inventory = open_for_command(options.file, options.max_size, status);
  if (!inventory) return status;
  const Redaction redaction = redact(*inventory, options.redact);
  if (!redaction.refusal.empty()) {
    complain(inventory->file_name, "not redacted: " + redaction.refusal);
    return kNo;
  }
  const int written = write_result(options.output, redaction.bytes);
  if (written != kDone || options.output == "-") return written;
  warn_of_name(redaction, options.output);
  return print_result(options.output + ": " + std::to_string(redaction.pseudonyms.count()) +
                      " names, numbers and addresses replaced; none is left\n");
}

constexpr char kExamples[] =
    "  inv redact MAC.inv -o shared.inv                    other names in every run\n"
    "  inv redact MAC.inv -o shared.inv --key \"$SECRET\"    the same ones in every file\n"
    "  inv redact DEBUG.inv -o shared.inv --drop-opaque    without the profiler's output\n";

}  // namespace

void add_redact(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "redact", "Replace what identifies a machine and its people", kExamples);
  command.add_option("FILE", options->file, "An inventory file; - is standard input")->required();
  command.add_option("-o,--output", options->output, "The file to write; - is standard output")
      ->required()
      ->type_name("FILE");
  command.add_option("--key", options->redact.key, "What the pseudonyms depend on (a random key)")
      ->type_name("TEXT")
      ->check([](const std::string& key) { return key.empty() ? "a key cannot be empty" : ""; });
  command.add_flag("--drop-opaque", options->redact.drop_opaque, "Leave out sections that are not trees");
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
