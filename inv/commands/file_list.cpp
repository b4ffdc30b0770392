#include "inv/commands/file_list.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "inv/base/input_file.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

// Room for ten million names.
constexpr uint64_t kLargestList = uint64_t{1} << 30;
constexpr std::string_view kEnding = ".inv";

bool is_folder(const std::string& path) {
  struct stat status;
  return path != "-" && stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool is_inventory_name(std::string_view name) {
  return name.size() > kEnding.size() && name.substr(name.size() - kEnding.size()) == kEnding;
}

class FileFinder {
 public:
  explicit FileFinder(int& status) : status_(status) {}

  void add(const std::string& path) {
    if (!is_folder(path)) return found.push_back(path);
    const size_t before = found.size();
    search(path);
    if (found.size() > before) return;
    complain(path, "has no *.inv files");
    status_ = worse(status_, kNo);
  }

  std::vector<std::string> found;

 private:
  void search(const std::string& folder) {
    std::vector<std::string> names;
    if (!list(folder, names)) return fail(folder);
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
      const std::string path = folder.back() == '/' ? folder + name : folder + "/" + name;
      struct stat status;
      if (lstat(path.c_str(), &status) != 0) {
        fail(path);
      } else if (S_ISDIR(status.st_mode)) {
        search(path);
      } else if (S_ISREG(status.st_mode) && is_inventory_name(name)) {
        found.push_back(path);
      }
    }
  }

  static bool list(const std::string& folder, std::vector<std::string>& names) {
    DIR* stream = opendir(folder.c_str());
    if (!stream) return false;
    while (const dirent* entry = readdir(stream)) {
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") names.emplace_back(name);
    }
    closedir(stream);
    return true;
  }

  void fail(const std::string& path) {
    complain(path, std::string("cannot be searched: ") + std::strerror(errno));
    status_ = worse(status_, kUnusable);
  }

  int& status_;
};

void add_listed(const FileOptions& options, FileFinder& finder, int& status) {
  std::string error;
  const std::optional<std::string> list = read_file(options.list, kLargestList, &error);
  if (!list) {
    complain(options.list, error);
    status = worse(status, kUnusable);
    return;
  }
  const char end = options.null_terminated ? '\0' : '\n';
  for (size_t start = 0; start < list->size();) {
    const size_t stop = std::min(list->find(end, start), list->size());
    const std::string name = list->substr(start, stop - start);
    // Only as an argument does "-" mean standard input.
    if (!name.empty()) finder.add(name == "-" ? "./-" : name);
    start = stop + 1;
  }
}

}  // namespace

bool FileOptions::are_many() const { return given.size() != 1 || !list.empty() || is_folder(given.front()); }

void add_files(CLI::App& command, FileOptions& options) {
  command.add_option("FILE", options.given,
                     "Inventory files, or folders that are searched for *.inv; - is standard input");
  add_list_of_files(command, options);
}

void add_list_of_files(CLI::App& command, FileOptions& options) {
  CLI::Option* list =
      command
          .add_option("--files-from", options.list,
                      "A file with the names of more files, one per line; - is standard input")
          ->type_name("LIST");
  command.add_flag("-0,--null", options.null_terminated, "The names in LIST end with NUL")->needs(list);
}

void refuse_reading_input_twice(const std::vector<std::string>& names) {
  if (std::count(names.begin(), names.end(), "-") > 1)
    throw CLI::ValidationError("FILE", "standard input can be read only once");
}

std::vector<std::string> find_files(const FileOptions& options, int& status) {
  if (options.given.empty() && options.list.empty()) throw CLI::RequiredError("FILE");
  std::vector<std::string> read = options.given;
  read.push_back(options.list);
  refuse_reading_input_twice(read);
  FileFinder finder(status);
  for (const std::string& path : options.given) finder.add(path);
  if (!options.list.empty()) add_listed(options, finder, status);
  return std::move(finder.found);
}

}  // namespace inv
