#include "inv/facts/overview.h"

#include "inv/facts/gaps.h"
#include "inv/facts/overview_parts.h"
#include "inv/facts/system_name.h"
#include "inv/file/machine.h"

namespace inv {
namespace {

bool begins_with(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

std::vector<Element> children_named(Element parent, std::string_view prefix) {
  std::vector<Element> named;
  for (const Element child : parent.children()) {
    if (begins_with(child.name(), prefix)) named.push_back(child);
  }
  return named;
}

// The first of the texts that is not empty.
std::string first_of(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    if (!text.empty()) return std::string(text);
  }
  return "";
}

// The system's name from sw_vers, and the profiler's own words, which the scanner shortens.
std::vector<std::string> reported_systems(Element platform) {
  std::string system;
  for (const char* part : {"system-name", "system-version", "system-version-extra"}) {
    const std::string_view words = platform.text(part);
    if (!words.empty()) system.append(system.empty() ? "" : " ").append(words);
  }
  const std::string build = text(platform, "system-build");
  if (!system.empty() && !build.empty()) system += " (" + build + ")";
  return {system, text(platform, "system")};
}

void read_system(Element top, Overview& overview) {
  const Element os = top.child("OS").first_child();
  const Element platform = top.child("Platform");
  overview.kernel = text(os, "kernel");
  overview.architecture = text(os, "architecture");
  overview.uptime = readable_uptime(os.text("uptime"));
  overview.os = system_name(
      {std::string(os.value()), text(os, "version"), overview.kernel, reported_systems(platform)});
  overview.model_name = text(platform, "model-name");
  overview.virtual_machine = platform.text("virtual-machine") == "1";
}

void read_processor(Element top, Overview& overview) {
  const Element processors = top.child("Processors");
  const Element first = processors.first_child();
  const Element platform = top.child("Platform");
  Processor& processor = overview.processor;
  const std::string chip = first_of({platform.text("chip"), platform.text("processor")});
  processor.name = first_of({first.value(), chip});
  if (chip != processor.name) processor.chip = chip;
  processor.packages = processors.child_count();
  processor.cores =
      first_of({first.text("core-count"), platform.text("core-count"), platform.text("physical-cores")});
  processor.performance_cores = text(platform, "performance-cores");
  processor.efficiency_cores = text(platform, "efficiency-cores");
  processor.megahertz = text(first, "current-clock-speed");
}

// "48 GB" in megabytes; 0 for other units.
uint64_t megabytes_of(std::string_view gigabytes) {
  const size_t blank = gigabytes.find(' ');
  constexpr uint64_t kMost = 1024 * 1024;
  const uint64_t count = blank == gigabytes.npos ? 0 : number(gigabytes.substr(0, blank));
  return gigabytes.substr(blank == gigabytes.npos ? 0 : blank) == " GB" && count <= kMost ? count * 1024 : 0;
}

// Without a filled slot nothing is known about any: the profiler reports the state of all slots, or of none
// on a Mac without slots.
std::vector<MemorySlot> slots_of(Element memory) {
  std::vector<MemorySlot> slots;
  bool known = false;
  for (const Element slot : children_named(memory, "Memory-slot:")) {
    slots.push_back({text(slot, "bank-label"), number(slot.text("capacity")), text(slot, "mem-type")});
    if (slots.back().megabytes > 0) known = true;
  }
  return known ? slots : std::vector<MemorySlot>();
}

void read_memory(Element top, Overview& overview) {
  const Element element = top.child("Memory");
  const Element platform = top.child("Platform");
  Memory& memory = overview.memory;
  memory.megabytes = number(element.child("General-info").text("physical-memory"));
  if (memory.megabytes == 0) memory.megabytes = megabytes_of(platform.text("memory"));
  memory.slots = slots_of(element);
  memory.type = text(platform, "memory-type");
  memory.soldered = !memory.type.empty() && !overview.virtual_machine;
  memory.upgradeable = platform.text("memory-upgradeable") != "0";
}

void read_network(Element top, Overview& overview) {
  for (const Element adapter : top.child("Network").child("Adapters").children()) {
    overview.adapters.push_back({std::string(adapter.value()), text(adapter, "bsd-device-name"),
                                 text(adapter, "ip-address"), text(adapter, "mac-address")});
  }
}

// Other children of the list are the Mac's adapters and buses.
size_t count_devices(Element list) { return children_named(list, "Device:").size(); }

void read_counts(Element top, Overview& overview) {
  const Element peripherals = top.child("Peripherals");
  overview.applications = top.child("Software").child_count();
  overview.accounts = top.child("User-accounts").child_count();
  overview.processes = top.child("Processes").child_count();
  overview.printers = peripherals.child("Printers").child_count();
  overview.usb_devices = peripherals.child("USB").child_count();
  overview.thunderbolt_devices = count_devices(peripherals.child("Thunderbolt"));
  overview.bluetooth_devices = count_devices(peripherals.child("Bluetooth"));
  overview.installed_packages = top.child("Packages").child_count();
}

// What is known from a file without an intact Snapshot.
void fill_from_asset(Element asset, Overview& overview) {
  const Element control = asset.child("control");
  const auto fill = [](std::string& field, std::string_view value) {
    if (field.empty()) field = value;
  };
  fill(overview.serial, asset.text("serial-number"));
  fill(overview.user, asset.text("user-name"));
  fill(overview.model, control.text("system-model"));
  fill(overview.os, system_name({text(control, "os-name"), text(control, "os-ver"), "", {}}));
  fill(overview.processor.name, control.text("cpu-model"));
  fill(overview.processor.megahertz, control.text("cpu-speed"));
  if (overview.memory.megabytes == 0) overview.memory.megabytes = number(control.text("phys-memory"));
}

}  // namespace

Overview overview_of(const Inventory& inventory) {
  Overview overview;
  const Element top = inventory.snapshot_top();
  overview.has_snapshot = static_cast<bool>(top);
  overview.name = machine_name(inventory);
  overview.identity = machine_identity(inventory);
  overview.timestamp = scan_timestamp(inventory);
  overview.time = scan_time(inventory);
  overview.file = inventory.file_name;
  overview.model = text(top.child("System").child("Computer-system"), "model");
  overview.serial = text(top.child("System").child("Chassis"), "serial");
  overview.user = text(top, "user-name");
  read_system(top, overview);
  read_processor(top, overview);
  read_memory(top, overview);
  read_storage(top, overview);
  read_video(top, overview);
  read_condition(top, overview);
  read_network(top, overview);
  read_counts(top, overview);
  fill_from_asset(inventory.asset_top(), overview);
  overview.gaps = gaps_in(inventory);
  return overview;
}

}  // namespace inv
