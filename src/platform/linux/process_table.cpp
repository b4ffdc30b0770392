#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/process_table.h"

namespace {

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

constexpr size_t kLongestName = 16;  // as on a Mac; the kernel's own threads have longer ones here

bool is_process_id(const char* name) { return *name >= '1' && *name <= '9'; }

// "PID (NAME) STATE PPID ...": the name is a process's own choice and may hold blanks and parentheses, so it
// ends at the last one.
std::optional<ProcessRecord> parse_stat(std::string_view stat) {
  const size_t open = stat.find('(');
  const size_t close = stat.rfind(')');
  if (open == stat.npos || close == stat.npos || close < open || stat.size() < close + 4) return std::nullopt;
  const std::string pid(stat.substr(0, open)), ppid(stat.substr(close + 4));
  const size_t length = std::min(close - open - 1, kLongestName);
  return ProcessRecord{static_cast<int32_t>(std::atol(pid.c_str())),
                       static_cast<int32_t>(std::atol(ppid.c_str())),
                       std::string(stat.substr(open + 1, length))};
}

std::optional<ProcessRecord> read_record(const char* pid) {
  const std::string path = std::string("/proc/") + pid + "/stat";
  const std::unique_ptr<FILE, CloseFile> file(std::fopen(path.c_str(), "re"));
  if (!file) return std::nullopt;
  char stat[512];
  const size_t length = std::fread(stat, 1, sizeof stat, file.get());
  return parse_stat({stat, length});
}

}  // namespace

ProcessTable read_process_table() {
  ProcessTable table{ProcessTableStatus::unavailable, {}};
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir("/proc"));
  if (!directory) return table;
  while (const dirent* entry = readdir(directory.get())) {
    if (!is_process_id(entry->d_name)) continue;
    if (auto record = read_record(entry->d_name)) table.records.push_back(std::move(*record));
  }
  table.status = ProcessTableStatus::complete;
  return table;
}
