// Files and paths as arguments of one command: they may stand in any order, and each says what it is.
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

// An argument is a file when it is "-", when there is a file of that name, or when it looks like one: paths
// begin with "/" or the name of a tree. A folder is one too, unless the scanner writes such a path: /System
// is both on a Mac, and the path is meant. The files of a list come after them.
FilesAndPaths sort_arguments(const std::vector<std::string>& arguments, const FileOptions& listed);

// Complains of a command without a file, or without a path where it needs one. False when it did.
bool has_file(std::string_view command, const FilesAndPaths& named);
bool has_path(std::string_view command, const FilesAndPaths& named);

// Complains of what is asked of a file and not there; `wanted` is what the command looks for: "value".
// The status becomes kNo, unless it is worse already.
class AbsentPaths {
 public:
  AbsentPaths(const Inventory& inventory, std::string_view wanted) : inventory_(inventory), wanted_(wanted) {}
  void complain_of(const std::string& path, int& status);

 private:
  const Inventory& inventory_;
  std::string_view wanted_;
  bool told_of_debug_file_ = false;
};

// Says what to do with a debug file, which has none of the facts that are asked of it; nothing for any other.
void advise_on_debug_file(const Inventory& inventory);

}  // namespace inv
