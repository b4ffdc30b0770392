#include "inv/compare/diff.h"

#include "inv/commands/secret_options.h"
#include "inv/file/machine.h"
#include "inv/secrets/secret_text.h"

namespace inv {
namespace {

struct Options {
  std::string old_file;
  std::string new_file;
  bool all = false;
  bool json = false;
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

int run(const Options& options) {
  int status = kDone;
  const std::unique_ptr<Inventory> old_inventory =
      open_for_command(options.old_file, options.max_size, status);
  const std::unique_ptr<Inventory> new_inventory =
      open_for_command(options.new_file, options.max_size, status);
  if (!old_inventory || !new_inventory) return status;
  mask_unless_kept(options.keep_secrets, *old_inventory);
  mask_unless_kept(options.keep_secrets, *new_inventory);
  if (machine_identity(*old_inventory) != machine_identity(*new_inventory)) {
    complain("diff", "these are two different machines: " + machine_identity(*old_inventory) + " and " +
                         machine_identity(*new_inventory));
  }
  const std::vector<Change> changes =
      diff(*old_inventory, *new_inventory, options.all ? Facts::all : Facts::lasting);
  if (!changes.empty()) status = worse(status, kNo);
  std::string text;
  if (options.json) {
    text = changes_json(changes);
  } else {
    const Terminal terminal = output_terminal();
    for (const Change& change : changes) text += describe(change, terminal);
  }
  if (!options.keep_secrets) tell_masked("diff", masks_in(text));
  return worse(status, print_result(text));
}

constexpr char kExamples[] =
    "  inv diff monday.inv friday.inv              what was installed, removed, replaced\n"
    "  inv diff --json monday.inv friday.inv | jq '.[] | select(.change == \"added\")'\n"
    "  inv diff --all monday.inv friday.inv        with free space, processes and times\n";

}  // namespace

void add_diff(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "diff", "Compare two scans; status 1 when they differ", kExamples);
  command.add_option("OLD", options->old_file, "The earlier inventory file")->required();
  command.add_option("NEW", options->new_file, "The later inventory file")->required();
  command.add_flag("--all", options->all, "Include what changes in every scan");
  command.add_flag("--json", options->json, "Print an array of objects");
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
