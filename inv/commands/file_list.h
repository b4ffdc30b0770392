// The files of a command that takes many: named one by one, found in folders, listed in a file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inv/commands/command.h"

namespace inv {

struct FileOptions {
  std::vector<std::string> given;  // files, folders, or "-"
  std::string list;                // a file with more of them; "-" is standard input
  bool null_terminated = false;    // names in it end with NUL instead of a line feed

  // Whether this is more than a single named file.
  bool are_many() const;
};

// FILE, --files-from and -0. A command line needs files or a list.
void add_files(CLI::App& command, FileOptions& options);
// Only --files-from and -0, for commands whose files are among other arguments.
void add_list_of_files(CLI::App& command, FileOptions& options);

// All files, in the order in which they were named; for a folder, every *.inv in it and below, sorted by
// name. Symbolic links in a folder are not followed. Complains of what cannot be listed, with status
// kUnusable, and of folders without files, with kNo.
std::vector<std::string> find_files(const FileOptions& options, int& status);

// Standard input, "-", has nothing left when it is read again: throws if two of the names are it.
void refuse_reading_input_twice(const std::vector<std::string>& names);

}  // namespace inv
