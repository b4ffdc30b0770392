#include "inv/facts/overview.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "driver/base/text.h"
#include "inv/base/byte_reader.h"
#include "inv/file/machine.h"

namespace inv {
namespace {

std::string text(Element element, std::string_view name) { return std::string(element.text(name)); }

uint64_t number(std::string_view digits) { return parse_decimal(digits).value_or(0); }

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

// The bytes of a size: exact where the file has them, else from decimal gigabytes.
uint64_t bytes_of(Element element, std::string_view name) {
  const Attribute* size = element.attribute(name);
  if (!size) return 0;
  if (const std::optional<uint64_t> exact = parse_decimal(size->annotation("base-value"))) return *exact;
  const double gigabytes = std::strtod(std::string(size->value).c_str(), nullptr);
  constexpr double kMost = 1e9;  // an exabyte; a file that says more is not believed
  return gigabytes > 0 && gigabytes < kMost ? static_cast<uint64_t>(gigabytes * 1e9) : 0;
}

// "?APP9CC3|iMac" as "iMac".
std::string display_model(Element monitor) {
  const std::string_view name = monitor.text("name");
  const std::string_view model = monitor.text("model");
  if (!model.empty()) return std::string(model);
  return std::string(name.substr(0, name.find('|')));
}

void read_processors(Element top, Overview& overview) {
  const Element processors = top.child("Processors");
  const Element first = processors.first_child();
  overview.processor = first.value();
  overview.packages = processors.child_count();
  overview.cores = text(first, "core-count");
  overview.megahertz = text(first, "current-clock-speed");
}

void read_memory(Element top, Overview& overview) {
  const Element memory = top.child("Memory");
  overview.memory_megabytes = number(memory.child("General-info").text("physical-memory"));
  for (const Element slot : children_named(memory, "Memory-slot:")) {
    overview.slots.push_back(
        {text(slot, "bank-label"), number(slot.text("capacity")), text(slot, "mem-type")});
  }
}

void read_storage(Element top, Overview& overview) {
  for (const Element disk : top.child("Storage").child("Physical-disks").children()) {
    const std::string_view model = disk.text("model");
    overview.disks.push_back({std::string(disk.name().substr(0, disk.name().find(':'))),
                              std::string(model.empty() ? disk.value() : model), text(disk, "serial"),
                              text(disk, "interface"), bytes_of(disk, "size")});
  }
  for (const Element volume : top.child("Storage").child("Logical-disks").children()) {
    overview.volumes.push_back({std::string(volume.value()), text(volume, "file-sys"),
                                text(volume, "mount-point"), bytes_of(volume, "size"),
                                bytes_of(volume, "free"), volume.attribute("free") != nullptr});
  }
}

void read_video(Element top, Overview& overview) {
  const Element video = top.child("Video");
  for (const Element monitor : video.child("Monitors").children()) {
    overview.displays.push_back({display_model(monitor), text(monitor, "max-resolution"),
                                 text(monitor.child("max-visible-image-size"), "diagonal"),
                                 monitor.text("main-monitor") == "1"});
  }
  for (const Element adapter : video.child("Video-devices").children()) {
    std::string name(adapter.value());
    const std::string ram = text(adapter, "ram");
    if (number(ram) > 0) name += ", " + ram + " MB";
    overview.graphics.push_back(std::move(name));
  }
}

void read_network(Element top, Overview& overview) {
  for (const Element adapter : top.child("Network").child("Adapters").children()) {
    overview.adapters.push_back({std::string(adapter.value()), text(adapter, "bsd-device-name"),
                                 text(adapter, "ip-address"), text(adapter, "mac-address")});
  }
}

void read_counts(Element top, Overview& overview) {
  overview.applications = top.child("Software").child_count();
  overview.accounts = top.child("User-accounts").child_count();
  overview.processes = top.child("Processes").child_count();
  overview.printers = top.child("Peripherals").child("Printers").child_count();
  overview.usb_devices = top.child("Peripherals").child("USB").child_count();
}

// What a file without a Snapshot, or with a damaged one, still says.
void fill_from_asset(Element asset, Overview& overview) {
  const Element control = asset.child("control");
  const auto fill = [](std::string& field, std::string_view value) {
    if (field.empty()) field = value;
  };
  fill(overview.serial, asset.text("serial-number"));
  fill(overview.user, asset.text("user-name"));
  fill(overview.model, control.text("system-model"));
  fill(overview.os, control.text("os-name"));
  fill(overview.processor, control.text("cpu-model"));
  fill(overview.megahertz, control.text("cpu-speed"));
  if (overview.memory_megabytes == 0) overview.memory_megabytes = number(control.text("phys-memory"));
}

}  // namespace

unsigned Volume::used_percent() const {
  if (bytes == 0 || free_bytes >= bytes) return 0;
  const double used = static_cast<double>(bytes - free_bytes) / static_cast<double>(bytes);
  return static_cast<unsigned>(used * 100);
}

Overview overview_of(const Inventory& inventory) {
  Overview overview;
  const Element top = inventory.snapshot_top();
  overview.has_snapshot = static_cast<bool>(top);
  overview.name = machine_name(inventory);
  overview.identity = machine_identity(inventory);
  overview.timestamp = scan_timestamp(inventory);
  overview.model = text(top.child("System").child("Computer-system"), "model");
  overview.serial = text(top.child("System").child("Chassis"), "serial");
  overview.user = text(top, "user-name");
  const Element os = top.child("OS").first_child();
  overview.os = os.value();
  if (!os.text("version").empty()) overview.os.append(", ").append(os.text("version"));
  overview.kernel = text(os, "kernel");
  overview.architecture = text(os, "architecture");
  overview.uptime = readable_uptime(os.text("uptime"));
  read_processors(top, overview);
  read_memory(top, overview);
  read_storage(top, overview);
  read_video(top, overview);
  read_network(top, overview);
  read_counts(top, overview);
  fill_from_asset(inventory.asset_top(), overview);
  return overview;
}

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

std::string readable_count(size_t count, const std::string& noun) {
  const std::string ending = count == 1 ? "" : noun.back() == 's' ? "es" : "s";
  return std::to_string(count) + " " + noun + ending;
}

}  // namespace inv
