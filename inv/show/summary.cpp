#include "inv/show/summary.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "inv/base/utf8.h"
#include "inv/base/version_order.h"
#include "inv/facts/overview_text.h"
#include "inv/show/table.h"

namespace inv {
namespace {

constexpr size_t kLabelWidth = 14;
constexpr size_t kBarCells = 20;
constexpr size_t kFewestCells = 5;
constexpr const char* kFull = "\xE2\x96\x88";   // U+2588, a filled cell
constexpr const char* kEmpty = "\xE2\x96\x91";  // U+2591, a shaded one
// Per cent from which a disk is highlighted.
constexpr unsigned kAlmostFull = 90;
// At most this many items of one kind are listed, so that a machine fits on a screen.
constexpr size_t kMostLines = 8;

std::string repeat(const char* text, size_t count) {
  std::string repeated;
  for (size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

// The columns beside a label; any number where nobody reads along.
size_t room_of(const Terminal& terminal) {
  return terminal.interactive ? terminal.width - kLabelWidth : kAnyWidth;
}

class Screen {
 public:
  explicit Screen(const Terminal& terminal) : terminal_(terminal) {}

  // Adds a labelled line unless the text is empty.
  void line(const std::string& label, const std::string& said) {
    if (said.empty()) return;
    const std::string text = printable(said);
    result += terminal_.cyan(pad_right(label, kLabelWidth)) + shorten(text, room_of(terminal_)) + "\n";
  }
  // Adds a line that contains colours and has already been shortened.
  void raw_line(const std::string& label, const std::string& text) {
    result += terminal_.cyan(pad_right(label, kLabelWidth)) + text + "\n";
  }
  // Only the first line has the label; lines beyond a few are only counted.
  template <typename Item, typename ToText>
  void lines(const std::string& label, const std::vector<Item>& items, ToText to_text) {
    const size_t shown = std::min(items.size(), kMostLines);
    for (size_t i = 0; i < shown; ++i) line(i == 0 ? label : "", to_text(items[i]));
    if (items.size() > shown) line("", "and " + std::to_string(items.size() - shown) + " more");
  }

  // Puts as many of the texts on each line as fit.
  void packed(const std::string& label, const std::vector<std::string>& texts) {
    std::vector<std::string> packed_lines;
    for (const std::string& text : texts) {
      const std::string longer = packed_lines.empty() ? text : packed_lines.back() + ", " + text;
      if (!packed_lines.empty() && columns(printable(longer)) <= terminal_.width - kLabelWidth) {
        packed_lines.back() = longer;
      } else {
        packed_lines.push_back(text);
      }
    }
    lines(label, packed_lines, [](const std::string& text) { return text; });
  }

  std::string result;

 private:
  const Terminal& terminal_;
};

// A filled cell for each slot that holds memory.
std::string memory_line(const Memory& memory) {
  const std::string text = memory_text(memory);
  if (memory.slots.empty()) return text;
  std::string cells;
  for (const MemorySlot& slot : memory.slots) cells += slot.megabytes > 0 ? kFull : kEmpty;
  return (text.empty() ? "" : text + "  ") + cells + "  " + std::to_string(filled_slots(memory)) + " of " +
         readable_count(memory.slots.size(), "slot") + " filled";
}

// So many cells, the used ones filled, and a blank; empty where so few cells show nothing.
std::string space_bar(unsigned used, size_t cells, const Terminal& terminal) {
  if (cells < kFewestCells) return "";
  const size_t filled = (used * cells + 50) / 100;
  const std::string bar = repeat(kFull, filled);
  return (used >= kAlmostFull ? terminal.red(bar) : terminal.green(bar)) +
         terminal.dim(repeat(kEmpty, cells - filled)) + " ";
}

// What is known of a volume's space, with a bar as wide as there is room; may be empty.
std::string space_text(const Volume& volume, const Terminal& terminal, size_t room) {
  if (!volume.knows_used()) {
    if (volume.knows_free) return shorten(readable_size(volume.free_bytes) + " free", room);
    return volume.bytes > 0 ? shorten(readable_size(volume.bytes), room) : "";
  }
  const unsigned used = volume.used_percent();
  const std::string figures = pad_left(std::to_string(used), 3) + " % of " + readable_size(volume.bytes) +
                              ", " + readable_size(volume.free_bytes) + " free";
  const size_t taken = columns(figures) + 1;
  const size_t cells = room > taken ? std::min(room - taken, kBarCells) : 0;
  return space_bar(used, cells, terminal) + shorten(figures, room);
}

// A volume that shares the space of the one above has no bar.
std::string volume_text(const Volume& volume, const Volume* above, const Terminal& terminal,
                        size_t name_width) {
  const std::string name = shorten(printable(volume.name), name_width);
  const size_t room = room_of(terminal) - name_width - 2;
  const bool shared = above && volume.shares_space_with(*above);
  const std::string space =
      shared ? terminal.dim(shorten("shares this space", room)) : space_text(volume, terminal, room);
  return space.empty() ? name : pad_right(name, name_width) + "  " + space;
}

void add_volumes(Screen& screen, const std::vector<Volume>& volumes, const Terminal& terminal) {
  constexpr size_t kWidestName = 24;
  const size_t most = std::min(kWidestName, room_of(terminal) / 3);
  size_t name_width = 0;
  for (const Volume& volume : volumes) {
    name_width = std::max(name_width, std::min(columns(printable(volume.name)), most));
  }
  const size_t shown = std::min(volumes.size(), kMostLines);
  for (size_t i = 0; i < shown; ++i) {
    const Volume* above = i == 0 ? nullptr : &volumes[i - 1];
    screen.raw_line(i == 0 ? "Volumes" : "", volume_text(volumes[i], above, terminal, name_width));
  }
  if (volumes.size() > shown) screen.line("", "and " + std::to_string(volumes.size() - shown) + " more");
}

uint64_t disk_bytes(const Overview& overview) {
  uint64_t bytes = 0;
  for (const Disk& disk : overview.disks) bytes += disk.bytes;
  return bytes;
}

// "10.6.8" from "Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549)": a table has no room for more.
std::string short_system(const std::string& os) {
  const size_t comma = os.rfind(", ");
  const std::string version = comma == os.npos ? os : os.substr(comma + 2);
  return version.substr(0, version.find(" ("));
}

bool repeat_names(const std::vector<Overview>& overviews) {
  std::set<std::string_view> names;
  return std::any_of(overviews.begin(), overviews.end(),
                     [&](const Overview& overview) { return !names.insert(overview.name).second; });
}

std::vector<std::string> row_of(const Overview& overview) {
  constexpr size_t kDate = 10;
  const uint64_t bytes = disk_bytes(overview);
  return {printable(overview.name),
          printable(overview.model),
          printable(overview.serial),
          printable(short_system(overview.os)),
          overview.memory.megabytes > 0 ? readable_memory(overview.memory.megabytes) : "",
          bytes > 0 ? readable_size(bytes) : "",
          shorten(printable(readable_time(overview.timestamp).substr(0, kDate)), kDate)};
}

// From the first digit on, "15.3" from "macOS 15.3 (24D60)": names have no order.
std::string version_in(const std::string& os) {
  const std::string text = short_system(os);
  return text.substr(std::min(text.find_first_of("0123456789"), text.size()));
}

struct Order {
  std::string_view name;
  bool (*is_known)(const Overview&);
  bool (*is_before)(const Overview&, const Overview&);
};

template <std::string Overview::*text>
constexpr Order by_text(std::string_view name) {
  return {name, [](const Overview& overview) { return !(overview.*text).empty(); },
          [](const Overview& one, const Overview& other) { return one.*text < other.*text; }};
}

constexpr Order kOrders[] = {
    by_text<&Overview::name>("name"),
    by_text<&Overview::model>("model"),
    by_text<&Overview::serial>("serial"),
    {"system", [](const Overview& overview) { return !version_in(overview.os).empty(); },
     [](const Overview& one, const Overview& other) {
       return compare_versions(version_in(one.os), version_in(other.os)) < 0;
     }},
    {"memory", [](const Overview& overview) { return overview.memory.megabytes > 0; },
     [](const Overview& one, const Overview& other) {
       return one.memory.megabytes < other.memory.megabytes;
     }},
    {"disk", [](const Overview& overview) { return disk_bytes(overview) > 0; },
     [](const Overview& one, const Overview& other) { return disk_bytes(one) < disk_bytes(other); }},
    {"age", [](const Overview& overview) { return !overview.time.empty(); },
     [](const Overview& one, const Overview& other) { return one.time > other.time; }}};

}  // namespace

std::string summary_screen(const Overview& overview, const Terminal& terminal) {
  Screen screen(terminal);
  const size_t width = terminal.interactive ? terminal.width : kAnyWidth;
  screen.result = terminal.bold(shorten(printable(overview.name), width)) + "\n";
  screen.line("Model", model_text(overview));
  screen.line("Serial", overview.serial);
  screen.line("System", joined({overview.os, overview.architecture}));
  screen.line("Kernel", overview.kernel);
  screen.line("Uptime", overview.uptime);
  screen.line("Scanned", readable_time(overview.timestamp));
  screen.line("Signed by", overview.signed_by);
  screen.line("Processor", joined(processor_texts(overview.processor)));
  screen.line("Memory", memory_line(overview.memory));
  screen.lines("Disks", overview.disks, disk_text);
  add_volumes(screen, overview.volumes, terminal);
  screen.lines("Displays", overview.displays, display_text);
  screen.lines("Graphics", overview.graphics, [](const std::string& name) { return name; });
  screen.line("Battery", joined(overview.battery));
  screen.packed("Security", overview.security);
  screen.line("Firewall", overview.firewall);
  screen.line("Management", overview.management);
  screen.lines("Network", overview.adapters, adapter_text);
  screen.line("Contents", joined(content_counts(overview)));
  screen.lines("Missing", overview.gaps, [](const std::string& gap) { return gap; });
  return screen.result;
}

std::string summary_table(const std::vector<Overview>& overviews, const Terminal& terminal) {
  constexpr size_t kSerial = 12;  // as long as those of Macs are
  std::vector<Column> columns = {
      {"Machine", false, GivesWay::end, 8},         {"Model", false, GivesWay::end, 6, 4},
      {"Serial", false, GivesWay::end, kSerial, 1}, {"System", false, GivesWay::end, 6, 2},
      {"Memory", true, GivesWay::nothing, 0, 5},    {"Disk", true, GivesWay::nothing, 0, 6},
      {"Scanned", false, GivesWay::nothing, 0, 3}};
  const bool files = repeat_names(overviews);
  const bool signatures = std::any_of(overviews.begin(), overviews.end(),
                                      [](const Overview& overview) { return !overview.signed_by.empty(); });
  if (files) columns.insert(columns.begin(), {"File", false, GivesWay::beginning, 8});
  if (signatures) columns.push_back({"Signed by", false, GivesWay::end});
  Table table(std::move(columns));
  for (const Overview& overview : overviews) {
    std::vector<std::string> row = row_of(overview);
    if (files) row.insert(row.begin(), printable(overview.file));
    if (signatures) row.push_back(printable(overview.signed_by));
    table.add(std::move(row));
  }
  const std::vector<std::string> left_out = table.leave_out(terminal.width);
  const std::string note = left_out.empty() ? "" : "No room for " + joined(left_out);
  return table.text(terminal.width) +
         (note.empty() ? "" : terminal.dim(shorten(note, terminal.width)) + "\n");
}

std::vector<std::string_view> sort_names() {
  std::vector<std::string_view> names;
  for (const Order& order : kOrders) names.push_back(order.name);
  return names;
}

void sort_overviews(std::vector<Overview>& overviews, std::string_view name) {
  const auto order = std::find_if(std::begin(kOrders), std::end(kOrders),
                                  [name](const Order& each) { return each.name == name; });
  if (order == std::end(kOrders)) return;
  std::stable_sort(overviews.begin(), overviews.end(), [order](const Overview& one, const Overview& other) {
    const bool known = order->is_known(one);
    return known != order->is_known(other) ? known : known && order->is_before(one, other);
  });
}

}  // namespace inv
