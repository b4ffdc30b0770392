#include "inv/show/summary.h"

#include "inv/commands/arguments.h"
#include "inv/commands/file_list.h"
#include "inv/commands/signature_options.h"

namespace inv {
namespace {

struct Options {
  FileOptions files;
  SignatureOptions signature;
  std::string sort;
  bool json = false;
  uint64_t max_size = kUsualMaxSize;
};

std::string summary_text(const std::vector<Overview>& overviews, bool single, bool json) {
  if (json) return summary_json(overviews);
  return single ? summary_screen(overviews.front(), output_terminal())
                : summary_table(overviews, output_terminal());
}

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
  if (overviews.empty() && !options.json) return status;
  sort_overviews(overviews, options.sort);
  const bool single = files.size() == 1;
  return worse(status, print_result(summary_text(overviews, single, options.json)));
}

constexpr char kExamples[] =
    "  inv summary MAC_0017F2000000.inv      one screen about a machine\n"
    "  inv summary *.inv                     a line about each of several\n"
    "  inv summary --sort age spool          the latest scans first\n";

}  // namespace

void add_summary(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "summary", "Summarise machines: one screen, or a line each", kExamples);
  add_files(command, options->files);
  add_signature_options(command, options->signature);
  limit_to(command
               .add_option("--sort", options->sort,
                           "Sort machines by a column: name, model, serial, system, "
                           "memory, disk or age")
               ->type_name("NAME"),
           sort_names());
  command.add_flag("--json", options->json, "Print an array with an object for each file");
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
