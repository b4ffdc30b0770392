#include "inv/facts/overview_text.h"

namespace inv {
namespace {

std::string with_unit(const std::string& value, const char* unit) {
  return value.empty() ? "" : value + unit;
}

// "12 cores (8 P + 4 E)": performance and efficiency cores.
std::string cores_text(const Processor& processor) {
  std::string text = with_unit(processor.cores, processor.cores == "1" ? " core" : " cores");
  if (text.empty() || processor.performance_cores.empty() || processor.efficiency_cores.empty()) return text;
  return text + " (" + processor.performance_cores + " P + " + processor.efficiency_cores + " E)";
}

std::string size_text(uint64_t bytes) { return bytes > 0 ? readable_size(bytes) : ""; }

std::string disk_name(const Disk& disk) {
  if (!disk.model.empty()) return disk.model;
  return disk.kind == "HDD" ? "disk" : disk.kind;
}

}  // namespace

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) {
    if (!text.empty()) all += (all.empty() ? "" : ", ") + text;
  }
  return all;
}

std::string model_text(const Overview& overview) {
  return joined({overview.model_name, overview.model, overview.virtual_machine ? "virtual machine" : ""});
}

std::vector<std::string> processor_texts(const Processor& processor) {
  if (processor.name.empty()) return {};
  const std::string count = processor.packages > 1 ? std::to_string(processor.packages) + " x " : "";
  return {count + processor.name, cores_text(processor), with_unit(processor.megahertz, " MHz"),
          processor.chip};
}

std::string memory_text(const Memory& memory) {
  if (memory.megabytes == 0) return "";
  const std::string type = memory.type.empty() ? "" : " " + memory.type;
  const char* fixed = memory.soldered ? "soldered" : memory.upgradeable ? "" : "not upgradeable";
  return joined({readable_memory(memory.megabytes) + type, fixed});
}

size_t filled_slots(const Memory& memory) {
  size_t filled = 0;
  for (const MemorySlot& slot : memory.slots) {
    if (slot.megabytes > 0) ++filled;
  }
  return filled;
}

std::string disk_text(const Disk& disk) {
  const bool shows_kind = disk.kind == "HDD" || disk.model.empty();
  return joined({disk_name(disk), size_text(disk.bytes), disk.interface, disk.medium,
                 shows_kind ? "" : disk.kind, with_unit(disk.problem, " by SMART")});
}

std::string display_text(const Display& display) {
  const std::string facts =
      joined({display.model, display.built_in ? "built-in" : "", with_unit(display.diagonal, " in"),
              display.resolution, with_unit(display.pixels, " pixels")});
  if (facts.empty()) return "display, no details reported";
  return joined({facts, display.main ? "main" : ""});
}

std::string adapter_text(const Adapter& adapter) {
  return joined({adapter.name, adapter.device, adapter.ip_address, adapter.mac_address});
}

std::vector<std::string> content_counts(const Overview& overview) {
  if (!overview.has_snapshot) return {};
  std::vector<std::string> counts = {
      readable_count(overview.applications, "application"), readable_count(overview.accounts, "account"),
      readable_count(overview.processes, "process"), readable_count(overview.printers, "printer"),
      readable_count(overview.usb_devices, "USB device")};
  const auto add = [&](size_t count, const char* noun) {
    if (count > 0) counts.push_back(readable_count(count, noun));
  };
  add(overview.thunderbolt_devices, "Thunderbolt device");
  add(overview.bluetooth_devices, "Bluetooth device");
  add(overview.installed_packages, "installed package");
  return counts;
}

}  // namespace inv
