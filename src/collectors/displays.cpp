#include "collectors/displays.h"

#include <cstring>
#include <initializer_list>

#include "collectors/edid.h"
#include "collectors/fields.h"
#include "profiler/units.h"

namespace {

constexpr char kBlanks[] = " \t\r\n";

struct Number {
  const char* name;
  int64_t value;
};

void write_numbers(Place& element, std::initializer_list<Number> numbers) {
  for (const Number& number : numbers) element.set_attribute(number.name, Value(number.value));
}

void write_compound(Place& element, const char* name, std::initializer_list<Number> members) {
  CompoundField field(element, name);
  for (const Number& member : members) field.set_member(member.name, Value(member.value));
  field.finish();
}

// A range that is missing or has an open end is not written.
void write_range(Place& element, const char* name, uint8_t min, uint8_t max) {
  if (min != 0 && max != 0) write_compound(element, name, {{"min", min}, {"max", max}});
}

// 0 for an unknown week; a 53rd week makes a fifth quarter, and 255, which marks a model year, the 20th.
int64_t quarter(uint16_t week) { return week == 0 ? 0 : (week - 1) / 13 + 1; }

// The ratios that count as one aspect: an open interval around it, half way to the next one, without overlap.
struct AspectRange {
  double above;
  double below;
  const char* name;
};

constexpr AspectRange kAspectRanges[] = {
    {31.0 / 24, 11.0 / 8, "4:3"},
    {29.0 / 24, 31.0 / 24, "5:4"},
    {125.0 / 72, 28.0 / 15, "16:9"},
    {187.0 / 120, 76.0 / 45, "16:10"},
};

void write_aspect_ratio(Place& monitor, uint16_t width_cm, uint16_t height_cm) {
  if (height_cm == 0) return monitor.set_attribute("aspect-ratio", text_value(""), ":unknown", "");
  // Single precision: it puts 31 x 24 cm just below 31/24.
  const double ratio = static_cast<float>(width_cm) / static_cast<float>(height_cm);
  for (const AspectRange& range : kAspectRanges) {
    if (range.above < ratio && ratio < range.below)
      return monitor.set_attribute("aspect-ratio", text_value(range.name));
  }
  monitor.set_attribute("aspect-ratio", text_value(""), ":other", "");
}

void write_modes(Place& monitor, const std::vector<VideoMode>& modes) {
  Place list(monitor, "Video-Modes");
  int number = 0;
  for (const VideoMode& mode : modes) {
    CompoundField field(list, format_string("v-mode:%d", ++number).get());
    const Text resolution = format_string("%u x %u (%s)", mode.width, mode.height, mode.aspect);
    field.set_member("res", text_value(resolution.get()));
    field.set_member("freq", Value(int64_t{mode.refresh}));
    field.finish();
  }
}

// `shown_name` is the monitor's name as it follows the maker and product.
void write_monitor(Place& monitor, const EdidInfo& info, const char* shown_name) {
  const char* maker = info.manufacturer.get();
  const char* product = info.product_id.get();
  const Text name = format_string("?%s%s|%s", maker, product, shown_name);
  monitor.set_attribute("manuf", text_value(format_string("?%s", maker).get()));
  monitor.set_attribute("id", text_value(format_string("%s%s", maker, product).get()));
  monitor.set_attribute("name", text_value(name.get()));
  monitor.set_value(text_value(name.get()));
  monitor.set_attribute("model", text_value(info.monitor_name.get()));
  // One byte describes both inputs, another colours and power saving; the console takes them apart.
  write_numbers(monitor, {{"video-input", info.video_input},
                          {"synch-input", info.video_input},
                          {"color-features", info.features},
                          {"dpms-mode-support", info.features}});
  monitor.set_attribute("gamma", Value(info.gamma));
  monitor.set_attribute("max-resolution", text_value(info.max_resolution.get()));
  write_numbers(monitor, {{"serial-digital", info.serial}});
  write_compound(monitor, "manufacture-date",
                 {{"manufacture-year", info.year},
                  {"manufacture-quarter", quarter(info.week)},
                  {"manufacture-week", info.week}});
  monitor.set_attribute("serial", text_value(info.serial_text.get()));
  write_compound(monitor, "max-visible-image-size",
                 {{"width", info.width_cm},
                  {"height", info.height_cm},
                  {"diagonal", diagonal_inches({info.width_cm, info.height_cm})}});
  write_range(monitor, "h-freq", info.h_min, info.h_max);
  write_aspect_ratio(monitor, info.width_cm, info.height_cm);
  write_range(monitor, "v-freq", info.v_min, info.v_max);
  write_modes(monitor, info.modes);
}

// A display on a connector of its own: its name ends with its first line.
void write_connected_display(Place& monitor, EdidInfo info) {
  char* name = info.monitor_name.get();
  if (name) {
    name[std::strcspn(name, "\n")] = '\0';
    trim(name, kBlanks, kTrimBoth);
  }
  write_monitor(monitor, info, name ? name : "");
}

void write_display(Place& monitor, EdidInfo info) {
  char* name = info.monitor_name.get();
  if (name) trim(name, kBlanks, kTrimBoth);
  write_monitor(monitor, info, name ? name : "(null)");
}

// True when the display takes its number.
bool collect_display(Place& monitor, const Tag& display) {
  const char* edid = find_text(display, "_spdisplays_edid");
  if (text_is(display, "_name", "spdisplays_display_connector")) {
    if (edid) write_connected_display(monitor, decode_edid(edid));
    return edid != nullptr;
  }
  if (const char* is_main = find_text(display, "spdisplays_main"))
    monitor.set_attribute("main-monitor", yes_no(equal_text(is_main, "spdisplays_yes")), "type", "bool");
  if (edid) write_display(monitor, decode_edid(edid));
  return true;
}

void collect_monitors(InventoryTree& snapshot, const Tag& adapters) {
  Place monitors(snapshot.root(), "/Video/Monitors");
  int number = 1;
  for (const auto& adapter : adapters.children()) {
    const Tag* displays = find_list(*adapter, "spdisplays_ndrvs");
    if (!displays) continue;
    for (const auto& display : displays->children()) {
      Place monitor(monitors, format_string("Monitor:%d", number).get(), Place::Names::distinct);
      if (collect_display(monitor, *display)) ++number;
    }
  }
}

void collect_adapters(InventoryTree& snapshot, const Tag& adapters) {
  Place list(snapshot.root(), "/Video/Video-devices");
  int number = 0;
  for (const auto& item : adapters.children()) {
    Place adapter(list, format_string("Video-adapter:%d", ++number).get(), Place::Names::distinct);
    copy_element_value(adapter, *item, "sppci_model");
    const double ram = size_to_mb(find_text(*item, "spdisplays_vram"));
    adapter.set_attribute("ram", Value(truncate_to_int64(ram)), "units", "MB");
  }
}

}  // namespace

void collect_displays(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* adapters = find_items(profiler, "SPDisplaysDataType");
  if (!adapters) return;
  collect_monitors(snapshot, *adapters);
  collect_adapters(snapshot, *adapters);
}
