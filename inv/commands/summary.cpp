#include "inv/show/summary.h"

#include "inv/commands/arguments.h"
#include "inv/commands/file_list.h"
#include "inv/commands/signature_options.h"

namespace inv {
namespace {

struct Options {
  FileOptions files;
  SignatureOptions signature;
  uint64_t max_size = kUsualMaxSize;
};

int run(const Options& options) {
  int status = kDone;
  const std::vector<std::string> files = find_files(options.files, status);
  const std::optional<SignatureCheck> signatures = SignatureCheck::create(options.signature, files);
  if (!signatures) return kUnusable;
  std::vector<Overview> overviews;
  for (const std::string& file : files) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, options.max_size, status);
    if (!inventory) continue;
    const std::optional<std::string> signer = signatures->signer_of(file, *inventory, status);
    if (!signer) continue;
    advise_on_debug_file(*inventory);
    overviews.push_back(overview_of(*inventory));
    overviews.back().signed_by = *signer;
  }
  if (overviews.empty()) return status;
  const bool single = files.size() == 1;
  return worse(status, print_result(single ? summary_screen(overviews.front(), output_terminal())
                                           : summary_table(overviews)));
}

constexpr char kExamples[] =
    "  inv summary MAC_0017F2000000.inv      one screen about a machine\n"
    "  inv summary *.inv                     a line about each of several\n";

}  // namespace

void add_summary(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "summary", "Summarise machines: one screen, or a line each", kExamples);
  add_files(command, options->files);
  add_signature_options(command, options->signature);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
