#include <unordered_map>

#include "inv/facts/overview_parts.h"
#include "inv/facts/overview_text.h"

namespace inv {
namespace {

// The elements of a list by the numbers in their names, "display:2" by "2". Lists about the same things
// number them alike.
using Numbered = std::unordered_map<std::string_view, Element>;

std::string_view number_in(std::string_view name) {
  const size_t colon = name.find(':');
  return colon == name.npos ? std::string_view() : name.substr(colon + 1);
}

Numbered numbered(Element list) {
  Numbered elements;
  for (const Element element : list.children()) elements.emplace(number_in(element.name()), element);
  return elements;
}

Element counterpart(const Numbered& elements, Element element) {
  const auto found = elements.find(number_in(element.name()));
  return found == elements.end() ? Element() : found->second;
}

// "?APP9CC3" from "?APP9CC3|iMac".
std::string_view identifier_of(Element monitor) {
  const std::string_view name = monitor.text("name");
  return name.substr(0, name.find('|'));
}

Display display_of(Element monitor) {
  Display display;
  const std::string_view model = monitor.text("model");
  display.model = model.empty() ? identifier_of(monitor) : model;
  display.resolution = text(monitor, "max-resolution");
  display.diagonal = text(monitor.child("max-visible-image-size"), "diagonal");
  display.main = monitor.text("main-monitor") == "1";
  return display;
}

// A name that is only one of the profiler's own words says nothing.
bool is_name(std::string_view value) {
  constexpr std::string_view kOwnWord = "spdisplays_";
  return !value.empty() && value.substr(0, kOwnWord.size()) != kOwnWord;
}

// "3024 x 1964", if the resolution, "1512 x 982 @ 120.00Hz", does not begin with it.
std::string other_pixels(Element display) {
  const std::string_view pixels = display.text("pixels");
  return display.text("resolution").substr(0, pixels.size()) == pixels ? "" : std::string(pixels);
}

// What an extended scan reports, completed by the monitor's EDID.
Display display_of(Element element, Element monitor) {
  Display display = display_of(monitor);
  if (monitor.text("model").empty() && is_name(element.value())) display.model = element.value();
  if (element.attribute("resolution")) display.resolution = element.text("resolution");
  display.pixels = other_pixels(element);
  display.built_in = element.text("built-in") == "1";
  if (element.attribute("main")) display.main = element.text("main") == "1";
  return display;
}

void read_displays(Element video, Overview& overview) {
  const Element monitors = video.child("Monitors");
  const Element displays = video.child("Displays");
  if (!displays) {
    for (const Element monitor : monitors.children()) overview.displays.push_back(display_of(monitor));
    return;
  }
  const Numbered by_number = numbered(monitors);
  for (const Element display : displays.children()) {
    overview.displays.push_back(display_of(display, counterpart(by_number, display)));
  }
}

// "1536 MB", but nothing for "0 MB", which a graphics processor without dedicated memory has.
std::string known_memory(std::string_view memory) {
  return number(memory.substr(0, memory.find(' '))) > 0 ? std::string(memory) : "";
}

std::string graphics_memory(Element adapter, Element details) {
  const std::string own = known_memory(text(adapter, "ram") + " MB");
  if (!own.empty()) return own;
  const std::string shared = known_memory(details.text("vram-shared"));
  return shared.empty() ? known_memory(details.text("vram")) : shared + " shared";
}

// "Metal 3" from "spdisplays_metal3". Older words name families that only programmers know.
std::string metal_version(std::string_view metal) {
  constexpr std::string_view kMetal = "spdisplays_metal";
  if (metal.substr(0, kMetal.size()) != kMetal || !parse_decimal(metal.substr(kMetal.size()))) return "";
  return "Metal " + std::string(metal.substr(kMetal.size()));
}

void read_graphics(Element video, Overview& overview) {
  const Numbered details = numbered(video.child("Details"));
  for (const Element adapter : video.child("Video-devices").children()) {
    const Element more = counterpart(details, adapter);
    const std::string cores = text(more, "cores");
    overview.graphics.push_back(
        joined({std::string(adapter.value()), graphics_memory(adapter, more),
                cores.empty() ? "" : cores + " cores", metal_version(more.text("metal"))}));
  }
}

}  // namespace

void read_video(Element top, Overview& overview) {
  read_displays(top.child("Video"), overview);
  read_graphics(top.child("Video"), overview);
}

}  // namespace inv
