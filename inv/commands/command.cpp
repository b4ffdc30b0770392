#include "inv/commands/command.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>

#include "inv/base/nearest.h"
#include "inv/base/output_file.h"
#include "inv/base/utf8.h"
#include "inv/show/terminal.h"

namespace inv {

namespace {

const std::map<std::string, Colours> kColours = {
    {"auto", Colours::automatic}, {"always", Colours::always}, {"never", Colours::never}};

}  // namespace

CLI::App& add_command(CLI::App& app, const char* name, const char* summary, const char* examples) {
  CLI::App* command = app.add_subcommand(name, summary);
  command->formatter_fn([examples](const CLI::App* shown, std::string shown_name, CLI::AppFormatMode mode) {
    return "Examples:\n" + std::string(examples) + "\n" + CLI::Formatter().make_help(shown, shown_name, mode);
  });
  const auto choose = [](const std::string& when) { set_colours(kColours.at(when)); };
  limit_to(command->add_option_function<std::string>("--color", choose, "auto, always or never (auto)")
               ->type_name("WHEN"),
           {"auto", "always", "never"});
  return *command;
}

void limit_to(CLI::Option* option, std::vector<std::string_view> names) {
  option->check([names = std::move(names)](const std::string& given) {
    if (std::find(names.begin(), names.end(), given) != names.end()) return std::string();
    std::string refusal = "\"" + printable(given) + "\" is not one of";
    for (const std::string_view name : names) refusal.append(name == names.front() ? " " : ", ").append(name);
    return refusal + did_you_mean(nearest(given, names));
  });
}

const CLI::App* find_command(const CLI::App& app, const std::string& name) {
  for (const CLI::App* command : app.get_subcommands({})) {
    if (command->get_name() == name) return command;
  }
  return nullptr;
}

int complain_of_command(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  const std::string meant = nearest(word, {names.begin(), names.end()});
  complain(word, "no such command" + (meant.empty() ? "; inv help lists them" : did_you_mean(meant)));
  return kUnusable;
}

void add_max_size(CLI::App& command, uint64_t& max_size) {
  command
      .add_option("--max-size", max_size,
                  "Refuse a file whose sections inflate to more than this, such as 100mb (256mb)")
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

void add_csv_safe(CLI::App& command, bool& csv_safe) {
  command.add_flag("--csv-safe", csv_safe,
                   "Put ' before CSV values that a spreadsheet would take for formulas");
}

void add_force(CLI::App& command, bool& force) {
  command.add_flag("--force", force, "Let the output replace an input");
}

bool is_over_input(const std::string& output, const std::vector<std::string>& inputs, bool force) {
  const bool is_over = !force && std::any_of(inputs.begin(), inputs.end(), [&](const std::string& input) {
    return !input.empty() && is_same_file(output, input);
  });
  if (is_over) complain(output, "is also an input; --force replaces it");
  return is_over;
}

int complain_of_output(const std::string& path) {
  complain(path == "-" ? "standard output" : path, std::strerror(errno));
  return kUnusable;
}

int print_result(const std::string& text) { return print(text) ? kDone : complain_of_output("-"); }

void ResultPrinter::add(std::string_view piece) {
  constexpr size_t kPiece = 1 << 16;
  pending_ += piece;
  if (pending_.size() >= kPiece) print_pending();
}

int ResultPrinter::finish() {
  print_pending();
  errno = reason_;
  return reason_ == 0 ? kDone : complain_of_output("-");
}

void ResultPrinter::print_pending() {
  if (reason_ == 0 && !print(pending_)) reason_ = errno;
  pending_.clear();
}

int write_result(const std::string& path, const std::string& content) {
  return write_file(path, content) ? kDone : complain_of_output(path);
}

int write_result(const std::string& path, const std::function<void(const TextSink&)>& write) {
  OutputFile output(path);
  if (!output.stream()) return complain_of_output(path);
  int reason = 0;  // errno of the first failure
  write([&](std::string_view piece) {
    if (reason != 0) return;
    if (std::fwrite(piece.data(), 1, piece.size(), output.stream()) != piece.size()) reason = errno;
  });
  if (reason == 0 && output.commit()) return kDone;
  if (reason != 0) errno = reason;
  return complain_of_output(path);
}

}  // namespace inv
