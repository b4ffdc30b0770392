#include "zxml/asset_info.h"

#include <cstring>

#include "collectors/fields.h"
#include "driver/dates.h"
#include "zxml/deflate.h"

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

// The texts in which a normal and a debug scan differ; none is written as the empty text.
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
void write_identity(Place& top, const Identity& identity, const NetworkIdentity& network) {
  const Row rows[] = {
      {"hostname", identity.host_name},
      {"ip-address", network.ip_address.get()},
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
      {"mac-address", network.hardware_address.get()},
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
  const SystemSummary& summary = inputs.summary;
  const Row rows[] = {
      {"domain", inputs.network.workgroup.get()},
      {"os-name", summary.os_name.get()},
      {"os-sp", summary.os_update.get()},
      {"os-ver", summary.os_version.get()},
      {"os-manuf", kManufacturer},
      {"cpu-count", summary.processor_packages.get()},
      {"cpu-count-virtual", summary.processor_cores.get()},
      {"cpu-speed", summary.clock_speed.get()},
      {"cpu-model", summary.processor_type.get()},
      {"cpu-manuf", summary.processor_vendor.get()},
      {"system-model", summary.machine_model.get()},
      {"system-manuf", summary.manufacturer.get()},
      {"chassis-manuf", kManufacturer},
      {"mb-manuf", kManufacturer},
      {"phys-memory", summary.physical_memory.get()},
      {"video-ram", summary.video_memory.get()},
      {"video-res", summary.display_resolution.get()},
      {"monitor-count", "0"},
      {"monitor-diag", summary.display_diagonal.get()},
      {"hdd-capacity", summary.disk_size.get()},
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
  written->annotate("free%", free_percentage(find_integer(disk, "used%")).get());
  if (text_is(disk, "mount-point", "/")) written->annotate("sys", "1");
}

// A disk's number is its position among all partitions, also those that do not tell their free space.
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
  Identity identity = {inputs.network.netbios_name.get(), inputs.computer_name,
                       virtual_type(inputs.summary.machine_model.get()), "nstSSH", "sstService"};
  identity.login = inputs.login;
  identity.user_name = inputs.summary.user_name.get();
  identity.timestamp = inputs.timestamp;
  identity.snapshot_types = "mac:1";
  identity.uuid = inputs.summary.platform_uuid.get();
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

void build_debug_asset_info(INVfile& container, const char* name, const NetworkIdentity& network,
                            const void* raw_output, size_t length) {
  auto tree = std::make_unique<InventoryTree>(container.byte_order_flag(), kTopName);
  Place top(tree->root(), "");
  write_identity(top, {name, name, "nvtPhysical", "nstNone", "sstNone"}, network);
  const Text now = format_now(DateForm::kCim);
  write_rows(top, {{"scan-attempt", now.get()}, {"error-message", "Debug scan"}});
  container.add_section(std::move(tree), INVfile::kAssetInfo, false, true);

  Bytes compressed = deflate_buffer(raw_output, length, "INVfile");
  const size_t compressed_length = compressed.length();
  container.add_raw_section(compressed.release(), compressed_length);
  container.frees_borrowed_data = true;
}
