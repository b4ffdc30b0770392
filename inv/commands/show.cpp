#include "inv/show.h"

#include "inv/commands/command.h"

namespace inv {
namespace {

struct Options {
  std::string file;
  std::vector<std::string> paths;
  std::vector<std::string> sections = {"snapshot", "asset"};
  uint32_t depth = kAnyDepth;
  uint64_t max_size = kUsualMaxSize;
};

// Without paths, the whole trees of the sections asked for.
std::vector<std::string> wanted_paths(const Options& options) {
  if (!options.paths.empty()) return options.paths;
  std::vector<std::string> paths;
  for (const std::string& section : options.sections) paths.push_back(section == "asset" ? "AssetInfo" : "/");
  return paths;
}

int run(const Options& options) {
  int status = kDone;
  const std::unique_ptr<Inventory> inventory = open_for_command(options.file, options.max_size, status);
  if (!inventory) return status;
  const Terminal terminal = output_terminal();
  std::string shown;
  bool all_found = true;
  for (const std::string& path : wanted_paths(options)) {
    bool found = false;
    for (const Content& content : inventory->contents) {
      if (!content.document) continue;
      for (const Match& match : find_matches(*content.document, path)) {
        shown += show_match(match, options.depth, terminal);
        found = true;
      }
    }
    all_found = all_found && found;
  }
  // A debug file has no snapshot: whoever names no path is shown what there is.
  const bool missing = options.paths.empty() ? shown.empty() : !all_found;
  return worse(worse(status, missing ? kNo : kDone), print_result(shown));
}

constexpr char kExamples[] =
    "  inv show MAC.inv                           everything\n"
    "  inv show MAC.inv /Storage                  a part of it\n"
    "  inv show MAC.inv '/Software/Soft:*/version'\n"
    "  inv show MAC.inv --section asset           the asset summary\n"
    "  inv show MAC.inv --depth 1 | less          an outline\n";

}  // namespace

void add_show(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "show", "Show the tree, or a part of it, with its paths", kExamples);
  command.add_option("FILE", options->file, "An inventory file; - is standard input")->required();
  command.add_option("PATH", options->paths, "What to show; * stands for any text within a segment");
  command.add_option("--section", options->sections, "Which trees to show: snapshot, asset (both)")
      ->delimiter(',')
      ->type_name("NAME")
      ->check(CLI::IsMember({"snapshot", "asset"}));
  command.add_option("--depth", options->depth, "Show so many levels of tags")->type_name("N");
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
