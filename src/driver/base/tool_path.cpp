#include "driver/base/tool_path.h"

#include <string_view>

namespace {

constexpr std::string_view kDirectories[] = {"/usr/bin", "/bin", "/usr/sbin", "/sbin"};

// "/usr/bin/" and "//usr/bin" are the same directory.
std::string without_spare_slashes(std::string_view directory) {
  std::string plain;
  for (const char character : directory) {
    if (character != '/' || plain.empty() || plain.back() != '/') plain += character;
  }
  if (plain.size() > 1 && plain.back() == '/') plain.pop_back();
  return plain;
}

bool holds(std::string_view path, std::string_view directory) {
  for (;;) {
    const size_t colon = path.find(':');
    if (without_spare_slashes(path.substr(0, colon)) == directory) return true;
    if (colon == path.npos) return false;
    path.remove_prefix(colon + 1);
  }
}

}  // namespace

std::string complete_tool_path(const char* path) {
  std::string complete = path ? path : "";
  for (const std::string_view directory : kDirectories) {
    if (holds(complete, directory)) continue;
    if (!complete.empty()) complete += ':';
    complete += directory;
  }
  return complete;
}
