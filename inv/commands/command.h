// What the commands have in common. Each registers itself with its options; parsing the command line then
// runs the one that was asked for.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "inv/base/text_sink.h"
#include "inv/file/inventory.h"

namespace inv {

// The program's exit statuses.
enum ExitStatus : int {
  kDone = 0,      // done, yes, valid, the same
  kNo = 1,        // absent, different, invalid, or a part of a file is damaged
  kUnusable = 2,  // unusable arguments or files
};

// The program's version and those of its libraries, a line each; without a line end.
std::string version_text();

// Adds a command whose help begins with examples, with the option --color.
CLI::App& add_command(CLI::App& app, const char* name, const char* summary, const char* examples);

// Restricts an option to these names; any other is refused with the list and the name that may have been
// meant.
void limit_to(CLI::Option* option, std::vector<std::string_view> names);

// The option --max-size, for every command that opens files.
void add_max_size(CLI::App& command, uint64_t& max_size);

// Opens a file and reports what is wrong with it. Null, and status kUnusable, if it cannot be read as an
// inventory at all; status kNo, unless it is already worse, if a part is damaged.
std::unique_ptr<Inventory> open_for_command(const std::string& path, uint64_t max_size, int& status);

// The option --csv-safe, for every command that writes CSV.
void add_csv_safe(CLI::App& command, bool& csv_safe);

// The option --force, for every command that writes a file.
void add_force(CLI::App& command, bool& force);
// Whether the output is one of the inputs and --force is not given; then complains. Empty names of inputs are
// ignored.
bool is_over_input(const std::string& output, const std::vector<std::string>& inputs, bool force);

// The worse of two statuses.
inline int worse(int one, int other) { return one > other ? one : other; }

// Complains that an output could not be written ("-" is standard output), with the reason from errno. Returns
// kUnusable.
int complain_of_output(const std::string& path);
// Returns kDone, or kUnusable after a complaint if standard output could not be written.
int print_result(const std::string& text);
// The same piece by piece, for results of any size.
class ResultPrinter {
 public:
  void add(std::string_view piece);
  // Returns kDone, or kUnusable after a complaint if standard output could not be written.
  int finish();

 private:
  void print_pending();

  std::string pending_;
  int reason_ = 0;  // errno of the first failure
};
// The same for a file, which appears whole or not at all; "-" is standard output.
int write_result(const std::string& path, const std::string& content);
// The same for what `write` puts into the sink that it is called with.
int write_result(const std::string& path, const std::function<void(const TextSink&)>& write);

// Null if there is no command of this name.
const CLI::App* find_command(const CLI::App& app, const std::string& name);
// Complains of a word that is not a command, and suggests the one that may have been meant. Returns
// kUnusable.
int complain_of_command(const CLI::App& app, const std::string& word);

void add_summary(CLI::App& app, int& status);
void add_show(CLI::App& app, int& status);
void add_get(CLI::App& app, int& status);
void add_list(CLI::App& app, int& status);
void add_verify(CLI::App& app, int& status);
void add_export(CLI::App& app, int& status);
void add_diff(CLI::App& app, int& status);
void add_unpack(CLI::App& app, int& status);
void add_report(CLI::App& app, int& status);
void add_load(CLI::App& app, int& status);
void add_redact(CLI::App& app, int& status);
void add_query(CLI::App& app, int& status);
void add_policy(CLI::App& app, int& status);
void add_schema(CLI::App& app, int& status);
void add_help(CLI::App& app, int& status);

}  // namespace inv
