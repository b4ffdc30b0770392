// What the commands have in common. Each registers itself with its options; parsing the command line then
// runs the one that was asked for.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "inv/file/inventory.h"

namespace inv {

// The program's exit statuses.
enum ExitStatus : int {
  kDone = 0,      // done, yes, valid, the same
  kNo = 1,        // absent, different, invalid, or a part of a file is damaged
  kUnusable = 2,  // arguments or files that nothing can be done with
};

// The program's version and those of its libraries, a line each; without a line end.
std::string version_text();

// A command whose help begins with examples, and which knows when to use colours. `run` is called when the
// command line asks for it; its status is the program's.
CLI::App& add_command(CLI::App& app, const char* name, const char* summary, const char* examples);

// Lets an option take only one of these names; another is refused with all of them, and with the one that
// may have been meant.
void limit_to(CLI::Option* option, std::vector<std::string_view> names);

// The option --max-size, for every command that opens files.
void add_max_size(CLI::App& command, uint64_t& max_size);

// Opens a file and complains of what is wrong with it. None, and status kUnusable, when it cannot be read as
// an inventory at all; status kNo, unless it is already worse, when a part is damaged.
std::unique_ptr<Inventory> open_for_command(const std::string& path, uint64_t max_size, int& status);

// The option --force, for every command that writes a file.
void add_force(CLI::App& command, bool& force);
// Whether a command must not write there, after a complaint: the output is one of the inputs, and there is no
// --force. Empty inputs are none.
bool is_over_input(const std::string& output, const std::vector<std::string>& inputs, bool force);

// The worse of two statuses.
inline int worse(int one, int other) { return one > other ? one : other; }

// Complains that an output could not be written ("-" is standard output), with the reason in errno.
// kUnusable.
int complain_of_output(const std::string& path);
// kDone, or kUnusable after a complaint when standard output could not be written.
int print_result(const std::string& text);
// The same for a file that appears whole or not at all; "-" is standard output.
int write_result(const std::string& path, const std::string& content);

// None when there is no command of this name.
const CLI::App* find_command(const CLI::App& app, const std::string& name);
// Complains of a word that is no command, and names the one that may have been meant. kUnusable.
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
void add_help(CLI::App& app, int& status);

}  // namespace inv
