#include "collectors/power_management.h"

#include "collectors/fields.h"

namespace {

constexpr char kPath[] = "/System/PowerManagement";
constexpr char kMainsKey[] = "AC_Power";

constexpr CopiedField kTimers[] = {
    {"System_Sleep_Timer", "system-sleep-timer"},
    {"Disk_Sleep_Timer", "disk-sleep-timer"},
    {"Display_Sleep_Timer", "display-sleep-timer"},
};

constexpr CopiedField kSwitches[] = {
    {"Sleep_On_Power_Button", "sleep-on-power-button"},
    {"Automatic_Restart_On_Power_Loss", "auto-restart-on-power-loss"},
    {"Wake_On_LAN", "wake-on-lan"},
    {"Wake_On_AC_Change", "wake-on-ac-change"},
    {"Wake_On_Clamshell_Open", "wake-on-clamshell-open"},
    {"ReduceBrightness", "reduce-brightness"},
    {"Display_Sleep_Uses_Dim", "display-sleep-uses-dim"},
};

void write_settings(Place& element, const Tag& profile) {
  copy_fields(element, profile, kTimers);
  for (const CopiedField& field : kSwitches) {
    // Only the profiler's "Yes" means yes: even a number means no.
    if (!find_value(profile, field.key)) continue;
    element.set_attribute(field.name, yes_no(text_is(profile, field.key, "Yes")));
  }
}

const Tag* find_power_information(const InventoryTree& profiler) {
  const Tag* items = find_items(profiler, "SPPowerDataType");
  if (!items) return nullptr;
  for (const auto& item : items->children()) {
    if (text_is(*item, "_name", "sppower_information")) return item.get();
  }
  return nullptr;
}

}  // namespace

void collect_power_management(InventoryTree& snapshot, const InventoryTree& profiler) {
  const Tag* information = find_power_information(profiler);
  if (!information) return;
  Place summary(snapshot.root(), kPath);
  int number = 0;
  for (const auto& profile : information->children()) {
    Place element(summary, "Profile:" + std::to_string(++number), Place::Names::distinct);
    const bool mains = profile->name() == kMainsKey;
    element.set_value(text_value(mains ? "AC Power" : profile->name().c_str()));
    write_settings(element, *profile);
    if (mains) write_settings(summary, *profile);
  }
}
