#include "inv/commands/command.h"

namespace inv {
namespace {

struct Options {
  std::string command;
};

// App::help would show the help of the running command, which is this one.
std::string help_of_program(const CLI::App& app) {
  return app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
}

int run(const CLI::App& app, const Options& options) {
  if (options.command.empty()) return print_result(help_of_program(app));
  const CLI::App* command = find_command(app, options.command);
  return command ? print_result(command->help(app.get_name())) : complain_of_command(app, options.command);
}

constexpr char kExamples[] =
    "  inv help                     a list of the commands\n"
    "  inv help get                 the same as inv get --help\n";

}  // namespace

void add_help(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "help", "Show the help of a command", kExamples);
  command.add_option("COMMAND", options->command, "The command; all of them when none is named");
  command.callback([options, &app, &status] { status = run(app, *options); });
}

}  // namespace inv
