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

// Shows what is asked for of one file.
void show_file(const Inventory& inventory, const std::vector<std::string>& paths, const Options& options,
               const TextSink& sink, int& status) {
  const std::vector<const Document*> trees = wanted_trees(inventory, options);
  const Terminal terminal = output_terminal();
  AbsentPaths absent(inventory, "path");
  for (const std::string& path : paths) {
    const std::vector<Match> matches = matches_in(trees, path);
    if (matches.empty()) absent.complain_of(path, status);
    for (const Match& match : matches) show_match(match, options.depth, terminal, sink);
  }
}

int run(const Options& options) {
  FilesAndPaths named = sort_arguments(options.arguments, options.listed);
  if (!has_file("show", named)) return kUnusable;
  if (named.paths.empty()) named.paths.emplace_back();
  int status = kDone;
  ResultPrinter printer;
  bool is_first = true;
  for (const std::string& file : find_files(named.files, status)) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, options.max_size, status);
    if (!inventory) continue;
    if (named.files.are_many()) printer.add((is_first ? "" : "\n") + printable(inventory->file_name) + ":\n");
    is_first = false;
    show_file(
        *inventory, named.paths, options, [&](std::string_view piece) { printer.add(piece); }, status);
  }
  return worse(status, printer.finish());
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
