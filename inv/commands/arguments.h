// Files and paths as arguments of one command. They may come in any order, as each shows what it is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/commands/file_list.h"
#include "inv/file/inventory.h"

namespace inv {

struct FilesAndPaths {
  FileOptions files;
  std::vector<std::string> paths;
};

// Whether the value of an argument that precedes the files is named like one of them, "a.inv". If so,
// complains that it was left out.
bool is_named_like_file(std::string_view argument, const std::string& value);

// An argument is a file if it is "-", if a file of that name exists, or if it does not look like a path:
// paths begin with "/" or the name of a tree. So is a folder, unless the scanner writes such a path: /System
// is both on a Mac, and the path is meant. The files of a list come last.
FilesAndPaths sort_arguments(const std::vector<std::string>& arguments, const FileOptions& listed);

// Complains, and returns false, if a command has no file, or no path although it needs one.
bool has_file(std::string_view command, const FilesAndPaths& named);
bool has_path(std::string_view command, const FilesAndPaths& named);

// Complains of paths that a file does not have; `wanted` is what the command looks for: "value". The status
// becomes kNo, unless it is already worse.
class AbsentPaths {
 public:
  AbsentPaths(const Inventory& inventory, std::string_view wanted) : inventory_(inventory), wanted_(wanted) {}
  void complain_of(const std::string& path, int& status);

 private:
  const Inventory& inventory_;
  std::string_view wanted_;
  bool advised_ = false;
};

// Says what to do with a debug file, which has none of the facts; prints nothing for other files.
void advise_on_debug_file(const Inventory& inventory);

}  // namespace inv
