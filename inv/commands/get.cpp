#include "inv/base/utf8.h"
#include "inv/commands/command.h"
#include "inv/facts/facts.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::string file;
  std::vector<std::string> paths;
  uint64_t max_size = kUsualMaxSize;
};

// The values that a path names, one a line.
std::string values_at(const Inventory& inventory, const std::string& path, bool for_terminal) {
  std::string values;
  for (const Content& content : inventory.contents) {
    if (!content.document) continue;
    for (const Match& match : find_matches(*content.document, path)) {
      if (match.attribute ? !is_fact(*match.attribute) : !is_fact(match.element)) continue;
      const std::string_view value = match.attribute ? match.attribute->value : match.element.value();
      values += for_terminal ? printable(value) : std::string(value);
      values += '\n';
    }
  }
  return values;
}

int run(const Options& options) {
  int status = kDone;
  const std::unique_ptr<Inventory> inventory = open_for_command(options.file, options.max_size, status);
  if (!inventory) return status;
  const bool for_terminal = output_terminal().interactive;
  std::string all;
  for (const std::string& path : options.paths) {
    const std::string values = values_at(*inventory, path, for_terminal);
    if (values.empty()) status = worse(status, kNo);
    all += values;
  }
  return worse(status, print_result(all));
}

constexpr char kExamples[] =
    "  inv get MAC.inv /System/Chassis/serial\n"
    "  inv get MAC.inv '/Software/Soft:*/version'          of every application\n"
    "  inv get MAC.inv AssetInfo/control/os-name           from the asset summary\n"
    "  inv get MAC.inv /Security/Firewall/status || echo no firewall known\n";

}  // namespace

void add_get(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "get", "Print bare values; status 1 when a path matches none", kExamples);
  command.add_option("FILE", options->file, "An inventory file; - is standard input")->required();
  command.add_option("PATH", options->paths, "What to print; * matches any text within a segment")
      ->required();
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
