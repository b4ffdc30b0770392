#include "inv/facts/facts.h"

namespace inv {
namespace {

// Units that the scanner writes without saying so. A tag's name is compared up to its number or key.
struct UnitRow {
  std::string_view tag;
  std::string_view attribute;
  std::string_view unit;
};
constexpr UnitRow kUnits[] = {
    {"Processor", "l2-cache-size", "KB"},
    {"Processor", "l3-cache-size", "KB"},
    {"Processor", "current-clock-speed", "MHz"},
    {"Memory-slot", "capacity", "MB"},
    {"Memory-slot", "speed", "MHz"},
    {"General-info", "physical-memory", "MB"},
    {"mem-slot", "capacity", "MB"},
    {"HDD", "size", "GB"},
    {"Removable", "size", "GB"},
    {"partition", "size", "GB"},
    {"partition", "free", "GB"},
    {"partition", "used%", "%"},
    {"h-freq", "min", "kHz"},
    {"h-freq", "max", "kHz"},
    {"v-freq", "min", "Hz"},
    {"v-freq", "max", "Hz"},
    {"v-mode", "freq", "Hz"},
    {"max-visible-image-size", "width", "cm"},
    {"max-visible-image-size", "height", "cm"},
    {"max-visible-image-size", "diagonal", "in"},
    {"Removable", "bus-power", "mA"},
    {"Removable", "bus-power-used", "mA"},
    {"Device", "bus-power", "mA"},
    {"Device", "bus-power-used", "mA"},
    {"Profile", "system-sleep-timer", "min"},
    {"Profile", "disk-sleep-timer", "min"},
    {"Profile", "display-sleep-timer", "min"},
    {"PowerManagement", "system-sleep-timer", "min"},
    {"PowerManagement", "disk-sleep-timer", "min"},
    {"PowerManagement", "display-sleep-timer", "min"},
    {"Snapshot", "scan-time", "ms"},
    {"control", "cpu-speed", "MHz"},
    {"control", "phys-memory", "MB"},
    {"control", "video-ram", "MB"},
    {"control", "hdd-capacity", "GB"},
    {"control", "monitor-diag", "in"},
};

}  // namespace

std::string_view unit_of(Element element, const Attribute& attribute) {
  const std::string_view stated = attribute.annotation("units");
  if (!stated.empty()) return stated;
  const std::string_view tag = element.name().substr(0, element.name().find(':'));
  for (const UnitRow& row : kUnits) {
    if (attribute.name == row.attribute && tag == row.tag) return row.unit;
  }
  return {};
}

}  // namespace inv
