#include "extended/platform.h"

#include <cstring>

#include "extended/facts.h"
#include "extended/tool_texts.h"

namespace {

constexpr CopiedField kModelFields[] = {
    {"machine_name", "model-name"},
    {"model_number", "model-number"},
    {"chip_type", "chip"},
};
// "SMC_version" is the key of Mac OS X 10.4.
constexpr CopiedField kFirmwareFields[] = {
    {"boot_rom_version", "firmware"},
    {"os_loader_version", "boot-loader"},
    {"SMC_version_system", "smc"},
    {"SMC_version", "smc"},
};
constexpr CopiedField kBootFields[] = {{"boot_mode", "boot-mode"}, {"boot_volume", "boot-volume"}};
constexpr CopiedField kBootSwitches[] = {{"secure_vm", "secure-virtual-memory"}};
constexpr CopiedField kMemoryFields[] = {{"dimm_type", "memory-type"}, {"dimm_manufacturer", "memory-manuf"}};
constexpr CopiedField kMemorySwitches[] = {
    {"is_memory_upgradeable", "memory-upgradeable"},
    {"global_ecc_state", "memory-ecc"},
};
// The most precise key is last, since a later value replaces an earlier one.
constexpr CopiedField kMetalFields[] = {
    {"spdisplays_metal", "metal"},
    {"spdisplays_metalfamily", "metal"},
    {"spdisplays_mtlgpufamilysupport", "metal"},
};

constexpr char kCores[] = "sppci_cores";

bool starts_with(const char* text, const char* start) {
  return text && std::strncmp(text, start, std::strlen(start)) == 0;
}

void write_system(Place& platform, const Tag* software, const ToolOutputs& tools) {
  if (software) copy_field(platform, "system", *software, "os_version");
  const SystemVersion version = parse_sw_vers(tools.sw_vers.get());
  set_text(platform, "system-name", version.name.get());
  set_text(platform, "system-version", version.version.get());
  set_text(platform, "system-version-extra", version.version_extra.get());
  set_text(platform, "system-build", version.build.get());
}

// The number of all cores: an integer, or the first number of "proc 8:6:2". The meaning of the other numbers
// differs between systems.
std::optional<int64_t> core_count(const Tag& hardware) {
  constexpr char kKey[] = "number_processors";
  constexpr char kStart[] = "proc ";
  const char* text = find_text(hardware, kKey);
  if (!starts_with(text, kStart)) return find_number(hardware, kKey);
  const char* numbers = text + std::strlen(kStart);
  return parse_digits({numbers, std::strcspn(numbers, ":")});
}

void write_processor(Place& platform, const Tag* hardware, const ProcessorFacts& processor) {
  if (hardware) copy_fields(platform, *hardware, kModelFields);
  set_text(platform, "processor", processor.name.get());
  if (hardware) set_number(platform, "core-count", core_count(*hardware));
  set_number(platform, "physical-cores", processor.physical_cores);
  set_number(platform, "logical-cores", processor.logical_cores);
  set_number(platform, "performance-cores", processor.performance_cores);
  set_number(platform, "efficiency-cores", processor.efficiency_cores);
}

bool names_metal(const Tag& adapter) {
  for (const CopiedField& field : kMetalFields) {
    if (find_text(adapter, field.key)) return true;
  }
  return false;
}

// The first adapter that `matches`; null when none does.
template <typename Predicate>
const Tag* find_adapter(const Tag& adapters, const Predicate& matches) {
  for (const auto& adapter : adapters.children()) {
    if (matches(*adapter)) return adapter.get();
  }
  return nullptr;
}

void write_graphics(Place& platform, const Tag* adapters) {
  if (!adapters) return;
  const Tag* processor =
      find_adapter(*adapters, [](const Tag& adapter) { return find_number(adapter, kCores).has_value(); });
  if (processor) set_number(platform, "gpu-core-count", find_number(*processor, kCores));
  copy_fields_of(platform, find_adapter(*adapters, names_metal), kMetalFields);
}

// Where memory is soldered, one item without slots describes all of it. Elsewhere the first item is a bank,
// or a slot with a status of its own, and its type and manufacturer are those of one module.
void write_memory(Place& platform, const Tag* hardware, const Tag* memory) {
  if (hardware) copy_field(platform, "memory", *hardware, "physical_memory");
  if (!memory) return;
  copy_field(platform, "memory", *memory, "SPMemoryDataType");
  if (!find_text(*memory, "dimm_status")) copy_fields(platform, *memory, kMemoryFields);
  copy_switches(platform, *memory, kMemorySwitches);
}

// sysctl reports any hypervisor; Apple's own also shows in the model's name.
std::optional<bool> is_virtual(const Tag* hardware, const ProcessorFacts& processor) {
  if (hardware && starts_with(find_text(*hardware, "machine_model"), "VirtualMac")) return true;
  return processor.virtual_machine;
}

void write_power(Place& platform, const InventoryTree& profiler) {
  if (!find_items(profiler, "SPPowerDataType")) return;
  set_yes_or_no(platform, "laptop",
                find_named_item(profiler, "SPPowerDataType", "spbattery_information") != nullptr);
  const Tag* supplies = find_named_item(profiler, "SPPowerDataType", "sppower_hwconfig_information");
  if (supplies)
    set_yes_or_no(platform, "ups", parse_yes_or_no(find_text(*supplies, "sppower_ups_installed")));
}

void write_boot(Place& platform, const Tag* hardware, const Tag* software) {
  copy_fields_of(platform, hardware, kFirmwareFields);
  if (!software) return;
  copy_fields(platform, *software, kBootFields);
  copy_switches(platform, *software, kBootSwitches);
}

bool is_apples(const Tag* hardware, const ProcessorFacts& processor) {
  constexpr char kMaker[] = "Apple ";
  return starts_with(processor.name.get(), kMaker) ||
         (hardware && starts_with(find_text(*hardware, "chip_type"), kMaker));
}

}  // namespace

void collect_platform(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* hardware = first_item(inputs.profiler, "SPHardwareDataType");
  const Tag* software = first_item(inputs.profiler, "SPSoftwareDataType");
  const ProcessorFacts processor = parse_sysctl(inputs.tools.sysctl.get());
  Place platform(snapshot.root(), "/Platform");
  write_system(platform, software, inputs.tools);
  write_processor(platform, hardware, processor);
  write_graphics(platform, find_items(inputs.profiler, "SPDisplaysDataType"));
  write_memory(platform, hardware, first_item(inputs.profiler, "SPMemoryDataType"));
  set_yes_or_no(platform, "virtual-machine", is_virtual(hardware, processor));
  write_power(platform, inputs.profiler);
  write_boot(platform, hardware, software);
  if (is_apples(hardware, processor))
    set_yes_or_no(platform, "rosetta", parse_rosetta(inputs.tools.rosetta.get()));
}
