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
  bool null_terminated = false;    // names in it end with a NUL, not with a line

  // Whether they are more than one file that somebody has named.
  bool are_many() const;
};

// FILE, --files-from and -0. A command line with neither files nor list is unusable.
void add_files(CLI::App& command, FileOptions& options);
// --files-from and -0 alone, for a command whose files stand among other arguments.
void add_list_of_files(CLI::App& command, FileOptions& options);

// All files, in the order in which they were named; those of a folder and of the folders in it, called *.inv,
// by their names. Symbolic links in a folder are not followed. What cannot be listed is complained of, with
// status kUnusable; a folder without files, with kNo.
std::vector<std::string> find_files(const FileOptions& options, int& status);

}  // namespace inv
