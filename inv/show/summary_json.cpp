#include "inv/base/json_text.h"
#include "inv/show/summary.h"

namespace inv {
namespace {

// An object with the known members.
class Known {
 public:
  Known& text(const char* name, const std::string& text) {
    if (!text.empty()) object_[name] = json_text(text);
    return *this;
  }
  Known& number(const char* name, uint64_t number) {
    if (number > 0) object_[name] = number;
    return *this;
  }
  Known& yes(const char* name, bool yes) {
    if (yes) object_[name] = true;
    return *this;
  }
  Known& json(const char* name, Json json) {
    if (!json.empty()) object_[name] = std::move(json);
    return *this;
  }
  template <typename Item, typename ToJson>
  Known& list(const char* name, const std::vector<Item>& items, ToJson to_json) {
    Json& array = object_[name] = Json::array();
    for (const Item& item : items) array.push_back(to_json(item));
    return *this;
  }
  Known& texts(const char* name, const std::vector<std::string>& texts) {
    return list(name, texts, [](const std::string& text) { return json_text(text); });
  }
  Json take() { return std::move(object_); }

 private:
  Json object_ = Json::object();
};

Json processor_json(const Processor& processor) {
  return Known()
      .text("name", processor.name)
      .text("chip", processor.chip)
      .number("packages", processor.packages)
      .text("cores", processor.cores)
      .text("performance_cores", processor.performance_cores)
      .text("efficiency_cores", processor.efficiency_cores)
      .text("megahertz", processor.megahertz)
      .take();
}

Json slot_json(const MemorySlot& slot) {
  return Known().text("label", slot.label).number("megabytes", slot.megabytes).text("type", slot.type).take();
}

Json memory_json(const Memory& memory) {
  const bool fixed = memory.megabytes > 0 && !memory.upgradeable;
  return Known()
      .number("megabytes", memory.megabytes)
      .text("type", memory.type)
      .yes("soldered", memory.soldered)
      .yes("not_upgradeable", fixed)
      .list("slots", memory.slots, slot_json)
      .take();
}

Json disk_json(const Disk& disk) {
  return Known()
      .text("kind", disk.kind)
      .text("model", disk.model)
      .text("serial", disk.serial)
      .text("interface", disk.interface)
      .number("bytes", disk.bytes)
      .text("medium", disk.medium)
      .text("problem", disk.problem)
      .take();
}

Json volume_json(const Volume& volume) {
  Json json = Known()
                  .text("name", volume.name)
                  .text("file_system", volume.file_system)
                  .text("mount_point", volume.mount_point)
                  .text("container", volume.container)
                  .number("bytes", volume.bytes)
                  .take();
  if (volume.knows_free) json["free_bytes"] = volume.free_bytes;
  return json;
}

Json display_json(const Display& display) {
  return Known()
      .text("model", display.model)
      .text("resolution", display.resolution)
      .text("pixels", display.pixels)
      .text("diagonal", display.diagonal)
      .yes("main", display.main)
      .yes("built_in", display.built_in)
      .take();
}

Json adapter_json(const Adapter& adapter) {
  return Known()
      .text("name", adapter.name)
      .text("device", adapter.device)
      .text("ip_address", adapter.ip_address)
      .text("mac_address", adapter.mac_address)
      .take();
}

Json counts_json(const Overview& overview) {
  if (!overview.has_snapshot) return {};
  return {{"applications", overview.applications},
          {"accounts", overview.accounts},
          {"processes", overview.processes},
          {"printers", overview.printers},
          {"usb_devices", overview.usb_devices},
          {"thunderbolt_devices", overview.thunderbolt_devices},
          {"bluetooth_devices", overview.bluetooth_devices},
          {"installed_packages", overview.installed_packages}};
}

Json overview_json(const Overview& overview) {
  return Known()
      .text("file", overview.file)
      .text("name", overview.name)
      .text("identity", overview.identity)
      .text("model", overview.model)
      .text("model_name", overview.model_name)
      .yes("virtual_machine", overview.virtual_machine)
      .text("serial", overview.serial)
      .text("system", overview.os)
      .text("kernel", overview.kernel)
      .text("architecture", overview.architecture)
      .text("uptime", overview.uptime)
      .text("timestamp", overview.timestamp)
      .text("scanned_at", overview.time)
      .text("signed_by", overview.signed_by)
      .text("user", overview.user)
      .json("processor", processor_json(overview.processor))
      .json("memory", memory_json(overview.memory))
      .list("disks", overview.disks, disk_json)
      .list("volumes", overview.volumes, volume_json)
      .list("displays", overview.displays, display_json)
      .texts("graphics", overview.graphics)
      .texts("battery", overview.battery)
      .texts("security", overview.security)
      .text("firewall", overview.firewall)
      .text("management", overview.management)
      .list("network", overview.adapters, adapter_json)
      .json("counts", counts_json(overview))
      .texts("missing", overview.gaps)
      .take();
}

}  // namespace

std::string summary_json(const std::vector<Overview>& overviews) {
  Json list = Json::array();
  for (const Overview& overview : overviews) list.push_back(overview_json(overview));
  return list.dump(2) + "\n";
}

}  // namespace inv
