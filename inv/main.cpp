// `inv`: opens, checks, compares and shares inventory files.
#include <cstdio>
#include <new>

#include "inv/commands/command.h"

namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  inv summary MAC.inv                         what machine is this?\n"
    "  inv get MAC.inv /System/Chassis/serial      one value\n"
    "  inv verify *.inv                            can a console import these?\n"
    "  inv export --format csv *.inv -o facts.csv  everything, as a table\n"
    "  inv redact MAC.inv -o shared.inv            a file to give away\n\n";

constexpr void (*kCommands[])(CLI::App&, int&) = {
    inv::add_summary, inv::add_show,  inv::add_get,    inv::add_list,   inv::add_verify,
    inv::add_export,  inv::add_diff,  inv::add_unpack, inv::add_report, inv::add_load,
    inv::add_redact,  inv::add_query, inv::add_policy, inv::add_schema, inv::add_help,
};

}  // namespace

int main(int argument_count, char** arguments) {
  CLI::App app("Opens inventory files of the Velkaro scanner.", "inv");
  app.formatter_fn([](const CLI::App* shown, std::string name, CLI::AppFormatMode mode) {
    return kExamples + CLI::Formatter().make_help(shown, name, mode);
  });
  app.set_version_flag("--version", inv::version_text());
  app.require_subcommand(1);
  int status = inv::kDone;
  for (const auto add : kCommands) add(app, status);
  const std::string first = argument_count > 1 ? arguments[1] : "-";
  if (first.substr(0, 1) != "-" && !inv::find_command(app, first))
    return inv::complain_of_command(app, first);
  // The library reports help, version and unusable arguments by throwing.
  try {
    app.parse(argument_count, arguments);
  } catch (const CLI::ParseError& outcome) {
    return app.exit(outcome) == 0 ? inv::kDone : inv::kUnusable;
  } catch (const std::bad_alloc&) {
    std::fputs("inv: out of memory\n", stderr);
    return inv::kUnusable;
  }
  return status;
}
