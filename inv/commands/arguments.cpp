#include "inv/commands/arguments.h"

#include <sys/stat.h>

#include "inv/base/characters.h"
#include "inv/base/nearest.h"
#include "inv/facts/paths.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

bool ends_like_file(std::string_view argument) { return argument.size() > 4 && ends_with(argument, ".inv"); }

bool is_file(const std::string& argument) {
  struct stat status;
  const bool exists = stat(argument.c_str(), &status) == 0;
  if (exists) return !S_ISDIR(status.st_mode) || !is_known_path(argument);
  return argument == "-" || ends_like_file(argument) || !looks_like_path(argument);
}

// What was given instead of what is missing: ": a.inv is a file"; empty if nothing was.
std::string what_else(const std::vector<std::string>& arguments, const char* is_one, const char* are_some) {
  std::string text;
  for (const std::string& argument : arguments) text += (text.empty() ? ": " : ", ") + argument;
  return arguments.empty() ? "" : text + (arguments.size() == 1 ? is_one : are_some);
}

std::string nearest_path_in(const Inventory& inventory, const std::string& path) {
  for (const Content& content : inventory.contents) {
    const std::string found = content.document ? nearest_path(*content.document, path) : "";
    if (!found.empty()) return found;
  }
  return "";
}

bool refuse(std::string_view command, const std::string& reason) {
  complain(command, reason);
  return false;
}

}  // namespace

bool is_named_like_file(std::string_view argument, const std::string& value) {
  if (!ends_like_file(value)) return false;
  complain(value, "is named like a file to read; " + std::string(argument) + " comes before the files");
  return true;
}

FilesAndPaths sort_arguments(const std::vector<std::string>& arguments, const FileOptions& listed) {
  FilesAndPaths sorted = {listed, {}};
  for (const std::string& argument : arguments) {
    (is_file(argument) ? sorted.files.given : sorted.paths).push_back(argument);
  }
  return sorted;
}

bool has_file(std::string_view command, const FilesAndPaths& named) {
  return !named.files.given.empty() || !named.files.list.empty() ||
         refuse(command, "a FILE is missing" +
                             what_else(named.paths, " is a path within one", " are paths within one"));
}

bool has_path(std::string_view command, const FilesAndPaths& named) {
  return !named.paths.empty() ||
         refuse(command, "a PATH such as /System/Chassis/serial is missing" +
                             what_else(named.files.given, " is a file", " are files"));
}

void AbsentPaths::complain_of(const std::string& path, int& status) {
  complain(inventory_.file_name,
           path + ": no such " + std::string(wanted_) + did_you_mean(nearest_path_in(inventory_, path)));
  if (!advised_) advise_on_debug_file(inventory_);
  advised_ = true;
  status = worse(status, kNo);
}

void advise_on_debug_file(const Inventory& inventory) {
  if (!is_debug_file(inventory)) return;
  complain(inventory.file_name, "this is a debug file; inv unpack turns it into a simulated Mac");
}

}  // namespace inv
