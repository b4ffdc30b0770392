#include "inv/compare/diff.h"

#include "inv/commands/arguments.h"
#include "inv/commands/file_list.h"
#include "inv/commands/secret_options.h"
#include "inv/compare/diff_formats.h"
#include "inv/secrets/secret_text.h"

namespace inv {
namespace {

struct Options {
  std::string old_file;
  std::string new_file;
  bool all = false;
  bool json = false;
  std::string format = "text";
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

void write_changes(const Options& options, const Inventory& old_inventory, const Inventory& new_inventory,
                   const ChangeSentences& sentences, const TextSink& sink) {
  if (options.json || options.format == "json") return changes_json(sentences, sink);
  if (options.format == "markdown") return changes_markdown(old_inventory, new_inventory, sentences, sink);
  changes_text(sentences, output_terminal(), sink);
}

int run(const Options& options) {
  int status = kDone;
  refuse_reading_input_twice({options.old_file, options.new_file});
  const std::unique_ptr<Inventory> old_inventory =
      open_for_command(options.old_file, options.max_size, status);
  const std::unique_ptr<Inventory> new_inventory =
      open_for_command(options.new_file, options.max_size, status);
  if (!old_inventory || !new_inventory) return status;
  for (const Inventory* inventory : {old_inventory.get(), new_inventory.get()})
    advise_on_debug_file(*inventory);
  mask_unless_kept(options.keep_secrets, *old_inventory);
  mask_unless_kept(options.keep_secrets, *new_inventory);
  const std::string warning = machine_warning(*old_inventory, *new_inventory);
  if (!warning.empty()) complain("diff", warning);
  const ChangeSentences sentences(
      diff(*old_inventory, *new_inventory, options.all ? Facts::all : Facts::lasting));
  if (!sentences.changes().empty()) status = worse(status, kNo);
  ResultPrinter printer;
  size_t masked = 0;
  write_changes(options, *old_inventory, *new_inventory, sentences, [&](std::string_view piece) {
    masked += masks_in(piece);
    printer.add(piece);
  });
  const int printed = printer.finish();
  if (!options.keep_secrets) report_masked("diff", masked);
  return worse(status, printed);
}

constexpr char kExamples[] =
    "  inv diff monday.inv friday.inv              what was installed, removed, replaced\n"
    "  inv diff --format markdown monday.inv friday.inv      the same for a ticket\n"
    "  inv diff --json monday.inv friday.inv | jq '.[] | select(.change == \"added\")'\n"
    "  inv diff --all monday.inv friday.inv        with free space, processes and times\n";

}  // namespace

void add_diff(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "diff", "Compare two scans; status 1 when they differ", kExamples);
  command.add_option("OLD", options->old_file, "The earlier inventory file")->required();
  command.add_option("NEW", options->new_file, "The later inventory file")->required();
  command.add_flag("--all", options->all, "Include what changes in every scan");
  limit_to(command.add_option("-f,--format", options->format, "text, markdown or json (text)")
               ->type_name("FORMAT"),
           {"text", "markdown", "json"});
  command.add_flag("--json", options->json, "The same as --format json");
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
