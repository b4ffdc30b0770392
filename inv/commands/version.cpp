#include <sodium.h>
#include <sqlite3.h>
#include <zlib.h>
#include <nlohmann/json.hpp>

#include "driver/base/version.h"
#include "inv/commands/command.h"

namespace inv {
namespace {

// This library has its version as three numbers.
std::string json_version() {
  return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + '.' + std::to_string(NLOHMANN_JSON_VERSION_MINOR) +
         '.' + std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

}  // namespace

std::string version_text() {
  const std::pair<const char*, std::string> parts[] = {
      {"inv", kVersion},
      {"CLI11", CLI11_VERSION},
      {"libsodium", sodium_version_string()},
      {"nlohmann-json", json_version()},
      {"SQLite", sqlite3_libversion()},
      {"zlib", zlibVersion()},
  };
  std::string lines;
  for (const auto& [name, version] : parts) {
    if (!lines.empty()) lines += '\n';
    lines += name + (' ' + version);
  }
  return lines;
}

}  // namespace inv
