#include "inv/facts/readable.h"

#include <cstdio>

#include "driver/base/text.h"

namespace inv {
namespace {

struct Word {
  std::string_view word;
  std::string_view readable;
};

constexpr Word kWords[] = {
    {"apple", "Apple"},
    {"arch_arm", "Apple silicon"},
    {"arch_arm_i64", "Universal"},
    {"arch_i32", "Intel, 32-bit"},
    {"arch_i32_i64", "Intel, 32-bit and 64-bit"},
    {"arch_i64", "Intel"},
    {"arch_ios", "iOS"},
    {"arch_other", "other"},
    {"arch_web", "web"},
    {"identified_developer", "identified developer"},
    {"mac_app_store", "App Store"},
    {"package_source_apple", "Apple"},
    {"package_source_other", "others"},
    {"guid_partition_map_type", "GUID"},
    {"apple_partition_map_type", "Apple"},
    {"master_boot_record_partition_map_type", "MBR"},
    {"unknown_partition_map_type", "unknown"},
    {"ssd", "SSD"},
    {"Solid State", "SSD"},
    {"rotational", "hard disk"},
    {"Rotational", "hard disk"},
};

}  // namespace

std::string readable_time(const std::string& timestamp) {
  int year, month, day, hour, minute, second, zone, length = 0;
  char sign;
  const int read = std::sscanf(timestamp.c_str(), "%4d%2d%2d%2d%2d%2d.000000%c%4d%n", &year, &month, &day,
                               &hour, &minute, &second, &sign, &zone, &length);
  const bool whole = read == 8 && static_cast<size_t>(length) == timestamp.size() && zone >= 0;
  if (!whole || (sign != '+' && sign != '-')) return timestamp;
  return format_string("%04d-%02d-%02d %02d:%02d:%02d %c%02d:%02d", year, month, day, hour, minute, second,
                       sign, zone / 60, zone % 60)
      .get();
}

std::string readable_uptime(std::string_view uptime) {
  const std::string copy(uptime);
  int days, hours, minutes, seconds, length = 0;
  const int read =
      std::sscanf(copy.c_str(), "%8d%2d%2d%2d.000000:000%n", &days, &hours, &minutes, &seconds, &length);
  if (read != 4 || static_cast<size_t>(length) != copy.size()) return copy;
  const Text clock = format_string("%d:%02d:%02d", hours, minutes, seconds);
  if (days == 0) return clock.get();
  return std::to_string(days) + (days == 1 ? " day " : " days ") + clock.get();
}

std::string readable_memory(uint64_t megabytes) {
  if (megabytes < 1024) return std::to_string(megabytes) + " MB";
  if (megabytes % 1024 == 0) return std::to_string(megabytes / 1024) + " GB";
  return format_string("%.1f GB", static_cast<double>(megabytes) / 1024).get();
}

std::string readable_size(uint64_t bytes) {
  constexpr const char* kUnits[] = {"B", "KB", "MB", "GB", "TB", "PB", "EB"};
  double size = static_cast<double>(bytes);
  size_t unit = 0;
  for (; size >= 999.5; ++unit) size /= 1000;
  const bool decimals = unit > 0 && size < 9.95;
  return format_string(decimals ? "%.1f %s" : "%.0f %s", size, kUnits[unit]).get();
}

std::string_view readable_word(std::string_view word) {
  for (const Word& known : kWords) {
    if (known.word == word) return known.readable;
  }
  return word;
}

std::string readable_count(size_t count, const std::string& noun) {
  const std::string ending = count == 1 ? "" : noun.back() == 's' ? "es" : "s";
  return std::to_string(count) + " " + noun + ending;
}

}  // namespace inv
