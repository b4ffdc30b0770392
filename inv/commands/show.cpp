#include "inv/show/show.h"

#include <algorithm>

#include "inv/base/utf8.h"
#include "inv/commands/arguments.h"

namespace inv {
namespace {

struct Options {
  std::vector<std::string> arguments;
  FileOptions listed;  // more files than those among the arguments
  std::vector<std::string> sections = {"snapshot", "asset"};
  uint32_t depth = kAnyDepth;
  uint64_t max_size = kUsualMaxSize;
};

// The readable trees of the requested sections.
std::vector<const Document*> wanted_trees(const Inventory& inventory, const Options& options) {
  std::vector<const Document*> trees;
  for (size_t i = 0; i < inventory.contents.size(); ++i) {
    const std::string kind = kind_name(inventory.container->sections[i].kind);
    const bool wanted =
        std::find(options.sections.begin(), options.sections.end(), kind) != options.sections.end();
    if (wanted && inventory.contents[i].document) trees.push_back(&*inventory.contents[i].document);
  }
  return trees;
}

// The empty path names every tree as a whole.
std::vector<Match> matches_in(const std::vector<const Document*>& trees, const std::string& path) {
  std::vector<Match> all;
  for (const Document* tree : trees) {
    const std::vector<Match> found =
        path.empty() ? std::vector<Match>{{tree->top(), nullptr}} : find_matches(*tree, path);
    all.insert(all.end(), found.begin(), found.end());
  }
  return all;
}

// What is shown of one file.
std::string shown_of(const Inventory& inventory, const std::vector<std::string>& paths,
                     const Options& options, const Terminal& terminal, int& status) {
  const std::vector<const Document*> trees = wanted_trees(inventory, options);
  AbsentPaths absent(inventory, "path");
  std::string shown;
  for (const std::string& path : paths) {
    const std::vector<Match> matches = matches_in(trees, path);
    if (matches.empty()) absent.complain_of(path, status);
    for (const Match& match : matches) shown += show_match(match, options.depth, terminal);
  }
  return shown;
}

int run(const Options& options) {
  FilesAndPaths named = sort_arguments(options.arguments, options.listed);
  if (!has_file("show", named)) return kUnusable;
  if (named.paths.empty()) named.paths.emplace_back();
  int status = kDone;
  const Terminal terminal = output_terminal();
  std::string all;
  for (const std::string& file : find_files(named.files, status)) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, options.max_size, status);
    if (!inventory) continue;
    if (named.files.are_many()) all += (all.empty() ? "" : "\n") + printable(inventory->file_name) + ":\n";
    all += shown_of(*inventory, named.paths, options, terminal, status);
  }
  return worse(status, print_result(all));
}

constexpr char kExamples[] =
    "  inv show MAC.inv                           everything\n"
    "  inv show MAC.inv /Storage                  a part of it\n"
    "  inv show MAC.inv '/Software/Soft:*/version'\n"
    "  inv show *.inv /Memory                     of each file, below its name\n"
    "  inv show MAC.inv --section asset           the asset summary\n"
    "  inv show MAC.inv --depth 1 | less          an outline\n";

}  // namespace

void add_show(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "show", "Show the tree, or a part of it, with its paths", kExamples);
  command.add_option(
      "FILE|PATH", options->arguments,
      "Inventory files, or folders that are searched for *.inv; - is standard input. What to show of "
      "each; * matches any text within a segment");
  add_list_of_files(command, options->listed);
  limit_to(command.add_option("--section", options->sections, "Which trees to show: snapshot, asset (both)")
               ->delimiter(',')
               ->allow_extra_args(false)  // what follows is a file or a path
               ->type_name("NAME"),
           {"snapshot", "asset"});
  command.add_option("--depth", options->depth, "Show only this many levels of tags")->type_name("N");
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
