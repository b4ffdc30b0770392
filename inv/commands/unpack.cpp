#include "inv/export/unpack.h"

#include "inv/commands/command.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::string file;
  std::string folder;
  uint64_t max_size = kUsualMaxSize;
};

int run(const Options& options) {
  int status = kDone;
  const std::unique_ptr<Inventory> inventory = open_for_command(options.file, options.max_size, status);
  if (!inventory) return status;
  const std::vector<UnpackedFile> files = unpack(*inventory);
  std::string error;
  if (!write_folder(options.folder, files, &error)) {
    complain(options.folder, error);
    return kUnusable;
  }
  std::string written;
  for (const UnpackedFile& file : files) written += options.folder + "/" + file.path + "\n";
  return worse(status, print_result(written));
}

constexpr char kExamples[] =
    "  inv unpack MAC.inv mac/                     header and texts, as files\n"
    "  inv unpack customer-debug.inv customer/     a machine for the simulator:\n"
    "  simulator/run customer/ velkaro-scanner     scans the customer's Mac again\n";

}  // namespace

void add_unpack(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "unpack", "Take a file apart; a debug file becomes a simulated Mac", kExamples);
  command.add_option("FILE", options->file, "An inventory file; - is standard input")->required();
  command
      .add_option("FOLDER", options->folder,
                  "The folder to write to; created if missing, else it must be empty")
      ->required();
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
