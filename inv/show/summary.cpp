#include "inv/show/summary.h"

#include <algorithm>

#include "inv/base/utf8.h"
#include "inv/show/table.h"

namespace inv {
namespace {

constexpr size_t kLabelWidth = 14;
constexpr size_t kBarCells = 20;
constexpr const char* kFull = "\xE2\x96\x88";   // U+2588, a filled cell
constexpr const char* kEmpty = "\xE2\x96\x91";  // U+2591, a shaded one
// A disk this full is worth a colour.
constexpr unsigned kAlmostFull = 90;
// No machine of a summary shows more of one kind than a screen has room for.
constexpr size_t kMostLines = 8;

std::string repeat(const char* text, size_t count) {
  std::string repeated;
  for (size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

// The texts that are not empty, made printable, with a comma between.
std::string join(std::initializer_list<std::string> texts) {
  std::string joined;
  for (const std::string& text : texts) {
    if (text.empty()) continue;
    if (!joined.empty()) joined += ", ";
    joined += printable(text);
  }
  return joined;
}

class Screen {
 public:
  explicit Screen(const Terminal& terminal) : terminal_(terminal) {}

  // A labelled line; nothing when there is nothing to say. The text is printable.
  void line(const std::string& label, const std::string& text) {
    if (text.empty()) return;
    const size_t room = terminal_.width - kLabelWidth;
    result += terminal_.cyan(pad_right(label, kLabelWidth)) +
              (terminal_.interactive ? shorten(text, room) : text) + "\n";
  }
  // A line that carries its own colours and is kept short by its maker.
  void raw_line(const std::string& label, const std::string& text) {
    result += terminal_.cyan(pad_right(label, kLabelWidth)) + text + "\n";
  }
  // The label is before the first line only; lines beyond a few are counted.
  template <typename Item, typename ToText>
  void lines(const std::string& label, const std::vector<Item>& items, ToText to_text) {
    const size_t shown = std::min(items.size(), kMostLines);
    for (size_t i = 0; i < shown; ++i) line(i == 0 ? label : "", to_text(items[i]));
    if (items.size() > shown) line("", "and " + std::to_string(items.size() - shown) + " more");
  }

  std::string result;

 private:
  const Terminal& terminal_;
};

std::string processor_text(const Overview& overview) {
  std::string text = overview.packages > 1 ? std::to_string(overview.packages) + " x " : "";
  text += printable(overview.processor);
  if (text.empty()) return text;
  return join({text, overview.cores.empty() ? "" : overview.cores + " cores",
               overview.megahertz.empty() ? "" : overview.megahertz + " MHz"});
}

// A filled cell for each slot that holds memory.
std::string memory_text(const Overview& overview) {
  if (overview.memory_megabytes == 0 && overview.slots.empty()) return "";
  std::string text = readable_memory(overview.memory_megabytes);
  if (overview.slots.empty()) return text;
  text += "  ";
  size_t filled = 0;
  for (const MemorySlot& slot : overview.slots) {
    text += slot.megabytes > 0 ? kFull : kEmpty;
    if (slot.megabytes > 0) ++filled;
  }
  return text + "  " + std::to_string(filled) + " of " + readable_count(overview.slots.size(), "slot") +
         " filled";
}

std::string disk_text(const Disk& disk) {
  return join({disk.model.empty() ? disk.kind : disk.model, disk.bytes > 0 ? readable_size(disk.bytes) : "",
               disk.interface, disk.kind == "HDD" ? "" : disk.kind});
}

// What is known of a volume's space; empty for nothing.
std::string space_text(const Volume& volume, const Terminal& terminal) {
  if (!volume.knows_used()) {
    if (volume.knows_free) return readable_size(volume.free_bytes) + " free";
    return volume.bytes > 0 ? readable_size(volume.bytes) : "";
  }
  const unsigned used = volume.used_percent();
  const size_t cells = (used * kBarCells + 50) / 100;
  const std::string bar = repeat(kFull, cells);
  return (used >= kAlmostFull ? terminal.red(bar) : terminal.green(bar)) +
         terminal.dim(repeat(kEmpty, kBarCells - cells)) + " " + pad_left(std::to_string(used), 3) +
         " % of " + readable_size(volume.bytes) + ", " + readable_size(volume.free_bytes) + " free";
}

std::string volume_text(const Volume& volume, const Terminal& terminal, size_t name_width) {
  const std::string name = shorten(printable(volume.name), name_width);
  const std::string space = space_text(volume, terminal);
  return space.empty() ? name : pad_right(name, name_width) + "  " + space;
}

void add_volumes(Screen& screen, const std::vector<Volume>& volumes, const Terminal& terminal) {
  constexpr size_t kWidestName = 24;
  size_t name_width = 0;
  for (const Volume& volume : volumes) {
    name_width = std::max(name_width, std::min(columns(printable(volume.name)), kWidestName));
  }
  const size_t shown = std::min(volumes.size(), kMostLines);
  for (size_t i = 0; i < shown; ++i) {
    screen.raw_line(i == 0 ? "Volumes" : "", volume_text(volumes[i], terminal, name_width));
  }
  if (volumes.size() > shown) screen.line("", "and " + std::to_string(volumes.size() - shown) + " more");
}

std::string display_text(const Display& display) {
  return join({display.model, display.diagonal.empty() ? "" : display.diagonal + " in", display.resolution,
               display.main ? "main" : ""});
}

std::string adapter_text(const Adapter& adapter) {
  return join({adapter.name, adapter.device, adapter.ip_address, adapter.mac_address});
}

std::string contents_text(const Overview& overview) {
  if (!overview.has_snapshot) return "";
  return join({readable_count(overview.applications, "application"),
               readable_count(overview.accounts, "account"), readable_count(overview.processes, "process"),
               readable_count(overview.printers, "printer"),
               readable_count(overview.usb_devices, "USB device")});
}

std::vector<std::string> row_of(const Overview& overview) {
  uint64_t bytes = 0;
  for (const Disk& disk : overview.disks) bytes += disk.bytes;
  return {printable(overview.name),
          printable(overview.model),
          printable(overview.serial),
          printable(overview.os),
          overview.memory_megabytes > 0 ? readable_memory(overview.memory_megabytes) : "",
          bytes > 0 ? readable_size(bytes) : "",
          overview.has_snapshot ? std::to_string(overview.applications) : "",
          printable(readable_time(overview.timestamp))};
}

}  // namespace

std::string summary_screen(const Overview& overview, const Terminal& terminal) {
  Screen screen(terminal);
  screen.result = terminal.bold(printable(overview.name)) + "\n";
  screen.line("Model", printable(overview.model));
  screen.line("Serial", printable(overview.serial));
  screen.line("System", join({overview.os, overview.architecture}));
  screen.line("Kernel", printable(overview.kernel));
  screen.line("Uptime", printable(overview.uptime));
  screen.line("Scanned", printable(readable_time(overview.timestamp)));
  screen.line("Signed by", printable(overview.signed_by));
  screen.line("Processor", processor_text(overview));
  screen.line("Memory", memory_text(overview));
  screen.lines("Disks", overview.disks, disk_text);
  add_volumes(screen, overview.volumes, terminal);
  screen.lines("Displays", overview.displays, display_text);
  screen.lines("Graphics", overview.graphics, [](const std::string& name) { return printable(name); });
  screen.lines("Network", overview.adapters, adapter_text);
  screen.line("Contents", contents_text(overview));
  return screen.result;
}

std::string summary_table(const std::vector<Overview>& overviews) {
  std::vector<Column> columns = {{"Machine"},
                                 {"Model"},
                                 {"Serial"},
                                 {"System"},
                                 {"Memory", true},
                                 {"Disks", true},
                                 {"Applications", true},
                                 {"Scanned"}};
  const bool signatures = std::any_of(overviews.begin(), overviews.end(),
                                      [](const Overview& overview) { return !overview.signed_by.empty(); });
  if (signatures) columns.push_back({"Signed by"});
  Table table(std::move(columns));
  for (const Overview& overview : overviews) {
    std::vector<std::string> row = row_of(overview);
    if (signatures) row.push_back(printable(overview.signed_by));
    table.add(std::move(row));
  }
  return table.text();
}

}  // namespace inv
