#include "inv/file/verify.h"

#include "inv/base/utf8.h"
#include "inv/commands/command.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::vector<std::string> files;
  bool quiet = false;
  uint64_t max_size = kUsualMaxSize;
};

std::string verdict_line(const Verdict& verdict, const Terminal& terminal) {
  if (!verdict.faults.empty()) {
    return terminal.red("invalid") + " " + printable(describe(verdict.faults.front()));
  }
  std::string line = terminal.green("valid");
  if (verdict.lines_not_utf8 > 0) {
    line += ", but " + std::to_string(verdict.lines_not_utf8) +
            (verdict.lines_not_utf8 == 1 ? " line is" : " lines are") + " not UTF-8";
  }
  return line;
}

int run(const Options& options) {
  int status = kDone;
  const Terminal terminal = output_terminal();
  std::string lines;
  for (const std::string& path : options.files) {
    std::string error;
    const std::unique_ptr<Inventory> inventory = open_file(path, options.max_size, &error);
    if (!inventory) {
      complain(path, error);
      status = worse(status, kUnusable);
      continue;
    }
    const Verdict verdict = verify(*inventory);
    if (!verdict.faults.empty()) status = worse(status, kNo);
    lines += printable(inventory->file_name) + ": " + verdict_line(verdict, terminal) + "\n";
  }
  return options.quiet ? status : worse(status, print_result(lines));
}

constexpr char kExamples[] =
    "  inv verify *.inv                        a line for each file\n"
    "  inv verify --quiet MAC.inv && import MAC.inv\n";

}  // namespace

void add_verify(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "verify", "Say whether a console can import files, and where not", kExamples);
  command.add_option("FILE", options->files, "Inventory files; - is standard input")->required();
  command.add_flag("-q,--quiet", options->quiet, "Only the exit status");
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
