#include "extended/displays.h"

#include <cstring>
#include <string>

#include "extended/facts.h"

namespace {

// Where two keys give the same attribute, the later one is the better.
constexpr CopiedField kDisplayFields[] = {
    {"_spdisplays_display-vendor-id", "vendor-id"},
    {"_spdisplays_display-product-id", "product-id"},
    {"_spdisplays_display-year", "year"},
    {"_spdisplays_display-week", "week"},
    {"_spdisplays_display-serial-number", "serial"},
    {"spdisplays_display-serial-number", "serial"},
    {"spdisplays_connection_type", "connection"},
    {"spdisplays_display_type", "display-type"},
    {"spdisplays_resolution", "resolution"},
    {"_spdisplays_resolution", "resolution"},
    {"_spdisplays_pixels", "pixels"},
};
constexpr CopiedField kDisplaySwitches[] = {
    {"spdisplays_main", "main"},
    {"spdisplays_mirror", "mirrored"},
    {"spdisplays_online", "online"},
};
constexpr CopiedField kAdapterFields[] = {
    {"spdisplays_vendor", "vendor"},
    {"_spdisplays_vram", "vram"},
    {"spdisplays_vram_shared", "vram-shared"},
    {"spdisplays_metal", "metal"},
    {"spdisplays_metalfamily", "metal"},
    {"spdisplays_mtlgpufamilysupport", "metal"},
    {"sppci_bus", "bus"},
    {"spdisplays_device-id", "device-id"},
};

bool is_empty_connector(const Tag& display) {
  return text_is(display, "_name", "spdisplays_display_connector") && !find_text(display, "_spdisplays_edid");
}

std::optional<bool> is_built_in(const Tag& display) {
  constexpr char kBuiltInType[] = "spdisplays_built-in";
  const char* type = find_text(display, "spdisplays_display_type");
  if (type && std::strncmp(type, kBuiltInType, std::strlen(kBuiltInType)) == 0) return true;
  if (const char* connection = find_text(display, "spdisplays_connection_type"))
    return equal_text(connection, "spdisplays_internal");
  return parse_yes_or_no(find_text(display, "spdisplays_builtin"));
}

// "120.00Hz" of "1512 x 982 @ 120.00Hz".
void write_refresh_rate(Place& element, const Tag& display) {
  const char* resolution = find_text(display, "_spdisplays_resolution");
  const char* rate = resolution ? std::strchr(resolution, '@') : nullptr;
  if (rate && rate[1] != '\0') set_text(element, "refresh-rate", rate + 1);
}

void write_display(Place& element, const Tag& display, const Tag& adapter) {
  copy_element_value(element, display, "_name");
  copy_fields(element, display, kDisplayFields);
  write_refresh_rate(element, display);
  set_yes_or_no(element, "built-in", is_built_in(display));
  copy_switches(element, display, kDisplaySwitches);
  copy_field(element, "adapter", adapter, find_text(adapter, "sppci_model") ? "sppci_model" : "_name");
}

void collect_displays_of(InventoryTree& snapshot, const Tag& adapters) {
  Place displays(snapshot.root(), "/Video/Displays");
  int number = 0;
  for (const auto& adapter : adapters.children()) {
    const Tag* drivers = find_list(*adapter, "spdisplays_ndrvs");
    if (!drivers) continue;
    for (const auto& display : drivers->children()) {
      if (is_empty_connector(*display)) continue;
      Place element(displays, "display:" + std::to_string(++number), Place::Names::distinct);
      write_display(element, *display, *adapter);
    }
  }
}

void collect_adapter_details(InventoryTree& snapshot, const Tag& adapters) {
  Place details(snapshot.root(), "/Video/Details");
  int number = 0;
  for (const auto& adapter : adapters.children()) {
    Place element(details, "Video-adapter:" + std::to_string(++number), Place::Names::distinct);
    copy_fields(element, *adapter, kAdapterFields);
    set_number(element, "cores", find_number(*adapter, "sppci_cores"));
  }
}

}  // namespace

void collect_display_details(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* adapters = find_items(inputs.profiler, "SPDisplaysDataType");
  if (!adapters) return;
  collect_displays_of(snapshot, *adapters);
  collect_adapter_details(snapshot, *adapters);
}
