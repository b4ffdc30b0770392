#include "inv/redact/redact.h"

#include "inv/base/utf8.h"
#include "inv/commands/key_options.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::string file;
  std::string output;
  KeyOptions key;
  bool drop_opaque = false;
  bool force = false;
  uint64_t max_size = kUsualMaxSize;
};

void warn_of_name(const Redaction& redaction, const std::string& path) {
  if (redaction.pseudonyms.occurs_in(path.substr(path.rfind('/') + 1))) {
    complain(path, "the file's own name identifies the machine");
  }
}

std::string closing_line(const Redaction& redaction) {
  std::string line = std::to_string(redaction.pseudonyms.count()) + " names, numbers and addresses replaced";
  if (!redaction.remains.empty()) line += "; may still identify it: " + printable(redaction.remains);
  return line + "\n";
}

int run(const Options& options) {
  const std::vector<std::string> inputs = {options.file, options.key.key_file, options.key.salt_of};
  if (is_over_input(options.output, inputs, options.force)) return kUnusable;
  int status = kDone;
  std::unique_ptr<Inventory> inventory = open_for_command(options.file, options.max_size, status);
  if (!inventory) return status;
  const std::string name = inventory->file_name;
  const std::optional<ChosenKey> key = choose_key(options.key, options.max_size);
  if (!key) return kUnusable;
  const Redaction redaction =
      redact(std::move(inventory), {key->key, key->salt, options.drop_opaque, options.max_size});
  if (!redaction.refusal.empty()) {
    complain(name, "not redacted: " + redaction.refusal);
    return kNo;
  }
  const int written = write_result(options.output, redaction.bytes);
  if (written != kDone || options.output == "-") return written;
  warn_of_name(redaction, options.output);
  return print_result(options.output + ": " + closing_line(redaction));
}

constexpr char kExamples[] =
    "  inv redact MAC.inv -o shared.inv                    new pseudonyms in every run\n"
    "  inv redact MAC.inv -o shared.inv --key-file KEY     pseudonyms that KEY can reproduce\n"
    "  inv redact B.inv -o b.inv --key-file KEY --salt-of shared.inv    the same pseudonyms in both files\n"
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
  add_key_options(command, options->key);
  command.add_flag("--drop-opaque", options->drop_opaque, "Leave out sections that are not trees");
  add_force(command, options->force);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
