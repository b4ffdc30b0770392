#include "inv/report/report.h"

#include "inv/commands/secret_options.h"
#include "inv/secrets/secret_text.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::vector<std::string> files;
  bool compare = false;
  bool force = false;
  std::string output = "-";
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

int run(const Options& options) {
  if (options.files.size() != (options.compare ? 2 : 1)) {
    complain("report", options.compare ? "--compare takes two files, OLD and NEW" : "takes one file");
    return kUnusable;
  }
  if (is_over_input(options.output, options.files, options.force)) return kUnusable;
  int status = kDone;
  std::vector<std::unique_ptr<Inventory>> inventories;
  for (const std::string& file : options.files) {
    inventories.push_back(open_for_command(file, options.max_size, status));
    if (!inventories.back()) return status;
    mask_unless_kept(options.keep_secrets, *inventories.back());
  }
  const std::string page =
      options.compare ? comparison_page(*inventories[0], *inventories[1]) : report_page(*inventories[0]);
  if (!options.keep_secrets) tell_masked("report", masks_in(page));
  return worse(status, write_result(options.output, page));
}

constexpr char kExamples[] =
    "  inv report MAC.inv -o mac.html                        everything on one page\n"
    "  inv report --compare monday.inv friday.inv -o changes.html\n";

}  // namespace

void add_report(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "report", "Make a page of HTML that needs no network", kExamples);
  command.add_option("FILE", options->files, "An inventory file, or OLD and NEW with --compare")->required();
  command.add_flag("--compare", options->compare, "Show what changed from OLD to NEW");
  command.add_option("-o,--output", options->output, "Where to write instead of standard output")
      ->type_name("FILE");
  add_force(command, options->force);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
