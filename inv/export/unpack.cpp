#include "inv/export/unpack.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <set>

#include "inv/base/output_file.h"
#include "inv/file/debug_output.h"

namespace inv {
namespace {

constexpr mode_t kFolderMode = 0777;  // minus the umask

constexpr std::string_view kWholeOutput = "full";

// Some file systems, such as a Mac's, ignore case in names.
std::string in_small_letters(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(),
                 [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
  return small;
}

void add_machine(const Inventory& inventory, const std::string& profiler_output,
                 std::vector<UnpackedFile>& files) {
  std::set<std::string> names = {std::string(kWholeOutput)};
  files.push_back({"profiler/" + std::string(kWholeOutput) + ".plist", profiler_output});
  for (const DataType& type : split_profiler_output(profiler_output)) {
    if (files.size() > kMostUnpackedFiles) break;
    if (!names.insert(in_small_letters(type.name)).second) continue;
    files.push_back({"profiler/" + type.name + ".plist", output_of(type)});
  }
  files.push_back({"computer-name.txt", std::string(inventory.asset_top().text("int-name")) + "\n"});
}

// Where the simulator looks for the output of an additional command of an extended scan; empty for other
// commands.
std::string further_path(std::string_view command) {
  constexpr std::string_view kProfiler = "system_profiler -detailLevel full -xml ";
  const bool is_type = command.substr(0, kProfiler.size()) == kProfiler;
  const std::string name(is_type ? command.substr(kProfiler.size()) : command.substr(0, command.find(' ')));
  const bool is_plain = !name.empty() && in_small_letters(name) != kWholeOutput &&
                        std::all_of(name.begin(), name.end(), [](unsigned char character) {
                          return character < 128 && (std::isalnum(character) || character == '_');
                        });
  if (!is_plain) return "";
  return is_type ? "profiler/" + name + ".plist" : "tools/" + name + ".txt";
}

// Such output follows a line with its command.
void add_further(const std::string& section_name, const std::string& output,
                 std::vector<UnpackedFile>& files) {
  const size_t line_end = std::min(output.find('\n'), output.size());
  const std::string path = further_path(std::string_view(output).substr(0, line_end));
  if (path.empty()) {
    files.push_back({section_name + ".raw", output});
    return;
  }
  // The profiler may have printed the same among its default data types.
  files.erase(std::remove_if(files.begin(), files.end(),
                             [path = in_small_letters(path)](const UnpackedFile& file) {
                               return in_small_letters(file.path) == path;
                             }),
              files.end());
  files.push_back({path, output.substr(std::min(line_end + 1, output.size()))});
}

bool make_folder(const std::string& path) { return mkdir(path.c_str(), kFolderMode) == 0 || errno == EEXIST; }

bool is_empty_folder(const std::string& path) {
  DIR* folder = opendir(path.c_str());
  if (!folder) return false;
  bool empty = true;
  while (const dirent* entry = readdir(folder)) {
    const std::string_view name = entry->d_name;
    empty = empty && (name == "." || name == "..");
  }
  closedir(folder);
  return empty;
}

}  // namespace

std::vector<UnpackedFile> unpack(const Inventory& inventory) {
  std::vector<UnpackedFile> files = {{"header.txt", inventory.container->header_text}};
  for (size_t i = 0; i < inventory.contents.size() && files.size() <= kMostUnpackedFiles; ++i) {
    const Section& section = inventory.container->sections[i];
    const Content& content = inventory.contents[i];
    const std::string name = "section-" + std::to_string(section.number);
    if (content.document) {
      files.push_back({name + "-" + kind_name(section.kind) + ".zxml", content.document->text()});
    } else if (content.raw && &*content.raw != inventory.raw_data()) {
      add_further(name, *content.raw, files);
    } else if (content.raw) {
      add_machine(inventory, *content.raw, files);
    } else {
      files.push_back({name + ".stored", std::string(section.data)});
    }
  }
  return files;
}

bool write_folder(const std::string& folder, const std::vector<UnpackedFile>& files, std::string* error) {
  if (files.size() > kMostUnpackedFiles) {
    *error = "would hold more than " + std::to_string(kMostUnpackedFiles) + " files";
    return false;
  }
  if (!make_folder(folder)) {
    *error = std::string("cannot be created: ") + std::strerror(errno);
    return false;
  }
  if (!is_empty_folder(folder)) {
    *error = "is not an empty folder";
    return false;
  }
  for (const UnpackedFile& file : files) {
    const size_t slash = file.path.find('/');
    const bool made = slash == std::string::npos || make_folder(folder + "/" + file.path.substr(0, slash));
    if (made && write_file(folder + "/" + file.path, file.content)) continue;
    *error = file.path + " cannot be written: " + std::strerror(errno);
    return false;
  }
  return true;
}

}  // namespace inv
