#include "extended/battery.h"

#include "extended/facts.h"

namespace {

constexpr char kPower[] = "SPPowerDataType";

constexpr CopiedField kHealthFields[] = {
    {"sppower_battery_health", "condition"},
    {"sppower_battery_health_maximum_capacity", "maximum-capacity"},
};
constexpr CopiedField kChargeSwitches[] = {
    {"sppower_battery_fully_charged", "fully-charged"},
    {"sppower_battery_is_charging", "charging"},
};
constexpr CopiedField kModelFields[] = {
    {"sppower_battery_serial_number", "serial"},
    {"sppower_battery_manufacturer", "manufacturer"},
    {"sppower_battery_device_name", "device-name"},
    {"sppower_battery_firmware_version", "firmware-version"},
    {"sppower_battery_hardware_revision", "hardware-revision"},
    {"sppower_battery_cell_revision", "cell-revision"},
};
constexpr CopiedField kChargerSwitches[] = {{"sppower_battery_charger_connected", "charger-connected"}};
constexpr CopiedField kChargerFields[] = {{"sppower_ac_charger_name", "charger-name"}};

void write_health(Place& battery, const Tag* health) {
  if (!health) return;
  set_number(battery, "cycle-count", find_number(*health, "sppower_battery_cycle_count"));
  copy_fields(battery, *health, kHealthFields);
}

// Current systems give a percentage; earlier ones gave the charge and the capacity of a full battery.
void write_charge(Place& battery, const Tag* charge) {
  if (!charge) return;
  set_number(battery, "charge", find_number(*charge, "sppower_battery_state_of_charge"), "%");
  set_number(battery, "current-capacity", find_number(*charge, "sppower_battery_current_capacity"), "mAh");
  set_number(battery, "full-capacity", find_number(*charge, "sppower_battery_max_capacity"), "mAh");
  copy_switches(battery, *charge, kChargeSwitches);
}

void write_charger(Place& battery, const Tag* charger) {
  if (!charger) return;
  copy_switches(battery, *charger, kChargerSwitches);
  set_number(battery, "charger-watts", find_number(*charger, "sppower_ac_charger_watts"), "W");
  copy_fields(battery, *charger, kChargerFields);
}

}  // namespace

void collect_battery(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* item = find_named_item(inputs.profiler, kPower, "spbattery_information");
  if (!item) return;
  Place battery(snapshot.root(), "/Battery");
  write_health(battery, item->find_child("sppower_battery_health_info"));
  write_charge(battery, item->find_child("sppower_battery_charge_info"));
  copy_fields_of(battery, item->find_child("sppower_battery_model_info"), kModelFields);
  write_charger(battery, find_named_item(inputs.profiler, kPower, "sppower_ac_charger_information"));
}
