#include "inv/commands/command.h"

#include <cerrno>
#include <cstring>

#include "inv/base/output_file.h"
#include "inv/show/terminal.h"

namespace inv {

CLI::App& add_command(CLI::App& app, const char* name, const char* summary, const char* examples) {
  CLI::App* command = app.add_subcommand(name, summary);
  command->formatter_fn([examples](const CLI::App* shown, std::string shown_name, CLI::AppFormatMode mode) {
    return "Examples:\n" + std::string(examples) + "\n" + CLI::Formatter().make_help(shown, shown_name, mode);
  });
  return *command;
}

void add_max_size(CLI::App& command, uint64_t& max_size) {
  command
      .add_option("--max-size", max_size,
                  "Refuse a file whose sections inflate to more than this, such as 100mb (1gb)")
      ->transform(CLI::AsSizeValue(false).description(""))
      ->type_name("SIZE")
      ->check(CLI::Range(uint64_t{1}, uint64_t{1} << 40).description(""));
}

std::unique_ptr<Inventory> open_for_command(const std::string& path, uint64_t max_size, int& status) {
  std::string error;
  std::unique_ptr<Inventory> inventory = open_file(path, max_size, &error);
  if (!inventory) {
    complain(path, error);
    status = worse(status, kUnusable);
    return nullptr;
  }
  for (const Fault& fault : inventory->faults) complain(inventory->file_name, describe(fault));
  if (!inventory->container) {
    status = worse(status, kUnusable);
    return nullptr;
  }
  if (!inventory->faults.empty()) status = worse(status, kNo);
  return inventory;
}

int complain_of_output(const std::string& path) {
  complain(path == "-" ? "standard output" : path, std::strerror(errno));
  return kUnusable;
}

int print_result(const std::string& text) { return print(text) ? kDone : complain_of_output("-"); }

int write_result(const std::string& path, const std::string& content) {
  return write_file(path, content) ? kDone : complain_of_output(path);
}

}  // namespace inv
