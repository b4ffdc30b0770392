#include "zxml/asset_info.h"

#include <cstring>

#include "driver/base/dates.h"
#include "zxml/deflate.h"
#include "zxml/place.h"

namespace {

constexpr char kTopName[] = "AssetInfo";
constexpr char kManufacturer[] = "Apple Inc.";

struct Row {
  const char* name;
  const char* text;
};

template <size_t count>
void write_rows(Place& element, const Row (&rows)[count]) {
  for (const Row& row : rows) element.set_attribute(row.name, text_value(row.text));
}

// The texts that differ between a normal and a debug scan; null is written as the empty text.
struct Identity {
  const char* host_name;
  const char* computer_name;
  const char* virtual_type;
  const char* scan_type;
  const char* scan_subtype;
  const char* login = nullptr;
  const char* user_name = nullptr;
  const char* timestamp = nullptr;
  const char* snapshot_types = nullptr;
  const char* uuid = nullptr;
  const char* serial_number = nullptr;
  const char* asset_tag = nullptr;
};

// The order is that of the lines in the file.
void write_identity(Place& top, const Identity& identity, const AssetNetwork& network) {
  const Row rows[] = {
      {"hostname", identity.host_name},
      {"ip-address", network.ip_address},
      {"static-ip", network.manual ? "1" : "0"},
      {"int-name", identity.computer_name},
      {"alias", identity.computer_name},
      {"description", ""},
      {"comment", ""},
      {"inv-number", ""},
      {"login", identity.login},
      {"user-name", identity.user_name},
      {"asset-type", "natMacOS"},
      {"virtual-type", identity.virtual_type},
      {"scan-type", identity.scan_type},
      {"scan-subtype", identity.scan_subtype},
      {"auto-icon-type", "nitMacDesktop"},
      {"icon-type", "nitMacDesktop"},
      {"first-scan", identity.timestamp},
      {"last-scan", identity.timestamp},
      {"snapshot-list", identity.timestamp},
      {"snapshot-types", identity.snapshot_types},
      {"mac-address", network.hardware_address},
      {"uuid", identity.uuid},
      {"serial-number", identity.serial_number},
      {"asset-tag", identity.asset_tag},
  };
  write_rows(top, rows);
}

struct VirtualType {
  const char* word;  // in upper case
  const char* type;
};

// A model that names several products counts as the first of them.
constexpr VirtualType kVirtualTypes[] = {
    {"VMWARE", "nvtVMware"},
    {"VIRTUALBOX", "nvtVirtualBox"},
    {"PARALLELS", "nvtParallels"},
};

const char* virtual_type(const char* machine_model) {
  const Text model = copy_text(machine_model ? machine_model : "");
  upper_case_ascii(model.get());
  for (const VirtualType& known : kVirtualTypes) {
    if (std::strstr(model.get(), known.word)) return known.type;
  }
  return "nvtPhysical";
}

const Tag* find_grandchild(const Tag& tag, const char* child, const char* grandchild) {
  const Tag* found = tag.find_child(child);
  return found ? found->find_child(grandchild) : nullptr;
}

void write_control_rows(Place& control, const AssetInputs& inputs) {
  const AssetSummary& summary = inputs.summary;
  const Row rows[] = {
      {"domain", inputs.network.workgroup},
      {"os-name", summary.os_name},
      {"os-sp", summary.os_update},
      {"os-ver", summary.os_version},
      {"os-manuf", kManufacturer},
      {"cpu-count", summary.processor_packages},
      {"cpu-count-virtual", summary.processor_cores},
      {"cpu-speed", summary.clock_speed},
      {"cpu-model", summary.processor_type},
      {"cpu-manuf", summary.processor_vendor},
      {"system-model", summary.machine_model},
      {"system-manuf", summary.manufacturer},
      {"chassis-manuf", kManufacturer},
      {"mb-manuf", kManufacturer},
      {"phys-memory", summary.physical_memory},
      {"video-ram", summary.video_memory},
      {"video-res", summary.display_resolution},
      {"monitor-count", "0"},
      {"monitor-diag", summary.display_diagonal},
      {"hdd-capacity", summary.disk_size},
  };
  write_rows(control, rows);
  const Tag* monitors = find_grandchild(inputs.snapshot.top(), "Video", "Monitors");
  // A count is an integer; without the element the text stays.
  if (monitors) {
    control.set_attribute("monitor-count", Value(static_cast<int64_t>(monitors->children().size())));
  }
}

// The console expects the upper half of the 64-bit percentage here: "0", or "-1" when more than all is used.
Text free_percentage(int64_t used) {
  const uint64_t free = uint64_t{100} - static_cast<uint64_t>(used);
  return format_string("%d", static_cast<int>(static_cast<int32_t>(free >> 32)));
}

void write_disk(Place& control, const std::string& name, const Tag& disk, const Attribute& free) {
  Attribute* written = control.set_distinct_attribute(name, disk.value() ? *disk.value() : Value());
  if (!written) return;
  const Annotation* free_bytes = free.find_annotation("base-value");
  if (free_bytes) written->annotate("free", free_bytes->text.c_str());
  const Attribute* used = disk.find_attribute("used%");
  written->annotate("free%", free_percentage(used ? used->value().int64() : 0).get());
  const Attribute* mount_point = disk.find_attribute("mount-point");
  if (mount_point && equal_text(mount_point->value().text(), "/")) written->annotate("sys", "1");
}

// A disk's number is its position among all partitions, including those without a figure for free space.
void write_disks(Place& control, const Tag& snapshot) {
  const Tag* disks = find_grandchild(snapshot, "Storage", "Logical-disks");
  if (!disks) return;
  int number = 0;
  for (const auto& disk : disks->children()) {
    ++number;
    const Attribute* free = disk->find_attribute("free");
    if (free) write_disk(control, "disk:" + std::to_string(number), *disk, *free);
  }
}

}  // namespace

std::unique_ptr<InventoryTree> build_asset_info(const AssetInputs& inputs) {
  auto tree = std::make_unique<InventoryTree>(inputs.byte_order_flag, kTopName);
  Identity identity = {inputs.network.host_name, inputs.computer_name,
                       virtual_type(inputs.summary.machine_model), "nstSSH", "sstService"};
  identity.login = inputs.login;
  identity.user_name = inputs.summary.user_name;
  identity.timestamp = inputs.timestamp;
  identity.snapshot_types = "mac:1";
  identity.uuid = inputs.summary.platform_uuid;
  identity.serial_number = inputs.serial_number;
  identity.asset_tag = "1234567890000";

  Place top(tree->root(), "");
  write_identity(top, identity, inputs.network);
  Place control(top, "control");
  write_control_rows(control, inputs);
  write_disks(control, inputs.snapshot.top());
  control.set_attribute("fw-status", text_value("5"));
  return tree;
}

void build_debug_asset_info(INVfile& container, const char* name, const AssetNetwork& network,
                            const void* raw_output, size_t length) {
  auto tree = std::make_unique<InventoryTree>(container.byte_order_flag(), kTopName);
  Place top(tree->root(), "");
  write_identity(top, {name, name, "nvtPhysical", "nstNone", "sstNone"}, network);
  const Text now = format_now(DateForm::cim);
  write_rows(top, {{"scan-attempt", now.get()}, {"error-message", "Debug scan"}});
  container.add_section(std::move(tree), kAssetInfo, Layout::whole_compressed);

  add_raw_output(container, raw_output, length);
}

void add_raw_output(INVfile& container, const void* output, size_t length) {
  Bytes compressed = deflate_buffer(output, length, "INVfile");
  const size_t compressed_length = compressed.length();
  container.add_raw_section(compressed.release(), compressed_length);
  container.frees_borrowed_data = true;
}
