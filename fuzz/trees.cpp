// The profiler's facts on their way through every collector that runs no command. The input describes them
// line by line, so that keys and kinds are swapped more often than XML is broken:
//
//     {  }  [  ]       dictionaries and arrays, as in a list; what is not closed, or has no key, is salvaged
//     kNAME            a key; sTEXT a text, iNUMBER an integer, rNUMBER a real, dTIME a date; t and f
//
// fuzz/seed_trees.py describes recordings so.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "collectors/applications.h"
#include "collectors/computer_system.h"
#include "collectors/displays.h"
#include "collectors/firewall.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/network_identity.h"
#include "collectors/operating_system.h"
#include "collectors/printers.h"
#include "collectors/processors.h"
#include "collectors/storage.h"
#include "collectors/system_summary.h"
#include "collectors/usb.h"
#include "driver/asset_facts.h"
#include "extended/extended.h"
#include "fuzz/well_formed.h"
#include "profiler/plist_access.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"
#include "profiler/salvage.h"
#include "zxml/asset_info.h"

namespace {

using Collector = void (*)(InventoryTree& snapshot, InventoryTree& profiler);
constexpr Collector kCollectors[] = {
    collect_system,  collect_processors,       collect_memory,   collect_displays,
    collect_storage, collect_network_adapters, collect_printers, collect_usb,
    collect_os,      collect_applications,     collect_firewall,
};

struct Line {
  char mark;
  const char* element;  // null: the mark is replaced by a whole tag
  const char* tag;
};
constexpr Line kLines[] = {
    {'{', nullptr, "<dict>"},   {'}', nullptr, "</dict>"}, {'[', nullptr, "<array>"},
    {']', nullptr, "</array>"}, {'t', nullptr, "<true/>"}, {'f', nullptr, "<false/>"},
    {'k', "key", nullptr},      {'s', "string", nullptr},  {'i', "integer", nullptr},
    {'r', "real", nullptr},     {'d', "date", nullptr},
};

void append_escaped(std::string& list, std::string_view text) {
  for (const char character : text) {
    if (character == '<' || character == '&') {
      list += character == '<' ? "&lt;" : "&amp;";
    } else {
      list += character;
    }
  }
}

// The name of a removable disk, after any prefix, leads to diskutil.
bool asks_a_command(std::string_view key) {
  constexpr std::string_view kName = "bsd_name";
  return key.size() >= kName.size() && key.substr(key.size() - kName.size()) == kName;
}

void append_line(std::string& list, std::string_view line) {
  if (line.empty()) return;
  const std::string_view text = line.substr(1);
  for (const Line& known : kLines) {
    if (line.front() != known.mark) continue;
    if (!known.element) {
      list += known.tag;
    } else if (!asks_a_command(text)) {
      list.append("<").append(known.element).append(">");
      append_escaped(list, text);
      list.append("</").append(known.element).append(">");
    }
  }
}

std::string list_of(std::string_view lines) {
  std::string list = kPrologue;
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    append_line(list, line);
    lines.remove_prefix(line.size() == lines.size() ? line.size() : line.size() + 1);
  }
  return list + kEpilogue;
}

CFRef<CFArrayRef> parse(const std::string& list) {
  const ProfilerOutput output = {"", copy_range(list.data(), list.data() + list.size()),
                                 static_cast<uint32_t>(list.size())};
  CFRef<CFArrayRef> parsed = parse_profiler_output(salvage_output(output));
  expect(static_cast<bool>(parsed));
  return parsed;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const CFRef<CFArrayRef> list = parse(list_of({reinterpret_cast<const char*>(bytes), size}));
  InventoryTree profiler(1, "Macintosh");
  dump_profiler(list.get(), profiler);
  InventoryTree snapshot(1, "Snapshot");
  for (const Collector collect : kCollectors) collect(snapshot, profiler);
  const ToolOutputs no_tools;
  collect_extended(snapshot, {profiler, profiler, no_tools});
  expect_well_formed(snapshot);
  expect(!snapshot.serialize(Layout::whole_compressed).empty());

  const SystemSummary summary = summarize_system(list.get(), nullptr);
  const NetworkIdentity network = query_network_identity(list.get(), nullptr);
  const Text serial_number = find_hardware_serial(list.get());
  const auto asset_info = build_asset_info({1, snapshot, "20110112153045.000000+60", asset_summary(summary),
                                            asset_network(network), "Mac", serial_number.get(), ""});
  expect_well_formed(*asset_info);
  return 0;
}
