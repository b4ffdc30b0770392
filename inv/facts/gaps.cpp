#include "inv/facts/gaps.h"

#include "inv/base/byte_reader.h"
#include "inv/facts/system_name.h"

namespace inv {
namespace {

// What every working profiler reports.
struct Area {
  const char* name;
  bool (*is_known)(Element top);
};

constexpr Area kProfilerAreas[] = {
    {"hardware",
     [](Element top) { return top.child("System").child("Computer-system").attribute("model") != nullptr; }},
    {"network", [](Element top) { return static_cast<bool>(top.child("Network")); }},
    {"software", [](Element top) { return static_cast<bool>(top.child("OS")); }},
};

bool every_display_has_a_name(Element top) {
  for (const Element monitor : top.child("Video").child("Monitors").children()) {
    if (!monitor.attribute("name")) return false;
  }
  return true;
}

// What only an extended scan reports on some Macs.
constexpr Area kExtendedAreas[] = {
    {"disks", [](Element top) { return static_cast<bool>(top.child("Storage").child("Physical-disks")); }},
    {"processor", [](Element top) { return static_cast<bool>(top.child("Processors")); }},
    {"volumes", [](Element top) { return static_cast<bool>(top.child("Storage").child("Logical-disks")); }},
    {"displays", every_display_has_a_name},
};

// The names of the areas about which the snapshot says nothing, separated by commas.
template <size_t kCount>
std::string unknown_areas(Element top, const Area (&areas)[kCount]) {
  std::string names;
  for (const Area& area : areas) {
    if (!area.is_known(top)) names.append(names.empty() ? "" : ", ").append(area.name);
  }
  return names;
}

// The first kernel whose system has a tool or a data type of the profiler.
struct Since {
  std::string_view command;
  unsigned darwin;
};

constexpr Since kSince[] = {
    {"fdesetup", 12},          {"spctl", 12},
    {"csrutil", 15},           {"profiles", 17},
    {"SPStorageDataType", 15}, {"SPNVMeDataType", 17},
    {"SPiBridgeDataType", 17}, {"SPThunderboltDataType", 11},
    {"SPUSBHostDataType", 25}, {"SPInstallHistoryDataType", 11},
};

// "SPNVMeDataType" from a command line of the profiler, "fdesetup" from others.
std::string_view name_of_command(std::string_view line) {
  constexpr std::string_view kProfiler = "system_profiler ";
  if (line.substr(0, kProfiler.size()) == kProfiler) return line.substr(line.rfind(' ') + 1);
  return line.substr(0, line.find(' '));
}

// Unknown kernels are assumed to have everything.
bool is_expected(std::string_view command, std::optional<unsigned> darwin) {
  for (const Since& since : kSince) {
    if (darwin && since.command == command) return *darwin >= since.darwin;
  }
  return true;
}

// Why a command's answer is incomplete, and the attribute of its record that says so.
struct Reason {
  const char* text;
  const char* attribute;
  const char* value;  // null: any value
};

// The first that fits counts.
constexpr Reason kReasons[] = {
    {"left out, since the limits of the scan were used up", "run", "0"},
    {"not on this Mac", "missing", "1"},
    {"refused without administrator rights", "refused", "1"},
    {"damaged, and read as far as possible", "salvaged", "1"},
    {"cut off, since it printed without end", "cut", "1"},
    {"given up, since it said nothing", "silent", "1"},
    {"ended by a signal", "signal", nullptr},
    {"no answer", "bytes", "0"},
};
constexpr size_t kReasonCount = sizeof kReasons / sizeof *kReasons;

bool fits(Element command, const Reason& reason) {
  const Attribute* attribute = command.attribute(reason.attribute);
  return attribute && (!reason.value || attribute->value == reason.value);
}

// The index of the reason; kReasonCount if there is none.
size_t reason_for(Element command) {
  size_t number = 0;
  while (number < kReasonCount && !fits(command, kReasons[number])) ++number;
  return number;
}

void add_commands(Element scan, std::optional<unsigned> darwin, std::vector<std::string>& gaps) {
  std::string names[kReasonCount + 1];
  for (const Element command : scan.children()) {
    const std::string_view name = name_of_command(command.value());
    std::string& list = names[reason_for(command)];
    if (is_expected(name, darwin)) list.append(list.empty() ? "" : ", ").append(name);
  }
  for (size_t i = 0; i < kReasonCount; ++i) {
    if (!names[i].empty()) gaps.push_back(kReasons[i].text + (": " + names[i]));
  }
}

}  // namespace

std::vector<std::string> gaps_in(const Inventory& inventory) {
  const Element top = inventory.snapshot_top();
  if (!top) return {"no snapshot: only the machine's summary"};
  std::vector<std::string> gaps;
  const std::string unknown = unknown_areas(top, kProfilerAreas);
  if (!unknown.empty()) gaps.push_back("no profiler output: " + unknown + " unknown");
  const Element scan = top.child("Scan");
  if (!scan) {
    const std::string without = unknown_areas(top, kExtendedAreas);
    const bool has_hardware = kProfilerAreas[0].is_known(top);
    if (has_hardware && !without.empty()) gaps.push_back("scanned without /extended: " + without);
    return gaps;
  }
  add_commands(scan, darwin_of(top.child("OS").first_child().text("kernel")), gaps);
  return gaps;
}

}  // namespace inv
