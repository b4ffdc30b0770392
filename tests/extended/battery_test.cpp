#include "extended/battery.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kPower[] = "SPPowerDataType";

std::string battery(const std::string& lines) { return in_snapshot("*Battery=\n" + lines); }

TEST(Battery, HasHealthChargeAndCharger) {
  Mac mac;
  add_item(mac.profiler, kPower,
           {{"_name", "spbattery_information"},
            {"sppower_battery_health_info/sppower_battery_cycle_count", 88},
            {"sppower_battery_health_info/sppower_battery_health", "Good"},
            {"sppower_battery_health_info/sppower_battery_health_maximum_capacity", "83%"},
            {"sppower_battery_charge_info/sppower_battery_state_of_charge", 71},
            {"sppower_battery_charge_info/sppower_battery_fully_charged", "FALSE"},
            {"sppower_battery_charge_info/sppower_battery_is_charging", "TRUE"},
            {"sppower_battery_model_info/sppower_battery_serial_number", "BAT001"},
            {"sppower_battery_model_info/sppower_battery_manufacturer", "Maker"},
            {"sppower_battery_model_info/sppower_battery_device_name", "bq1"},
            {"sppower_battery_model_info/sppower_battery_firmware_version", "0a"},
            {"sppower_battery_model_info/sppower_battery_hardware_revision", "1"},
            {"sppower_battery_model_info/sppower_battery_cell_revision", "2"}});
  add_item(mac.profiler, kPower,
           {{"_name", "sppower_ac_charger_information"},
            {"sppower_battery_charger_connected", "TRUE"},
            {"sppower_ac_charger_watts", "94"},
            {"sppower_ac_charger_name", "96W Adapter"}});
  EXPECT_EQ(written(collect_battery, mac), battery("cycle-count=88\n"
                                                   "condition=Good\n"
                                                   "maximum-capacity=83%\n"
                                                   "charge=71\n~units=%\n"
                                                   "fully-charged=0\n"
                                                   "charging=1\n"
                                                   "serial=BAT001\n"
                                                   "manufacturer=Maker\n"
                                                   "device-name=bq1\n"
                                                   "firmware-version=0a\n"
                                                   "hardware-revision=1\n"
                                                   "cell-revision=2\n"
                                                   "charger-connected=1\n"
                                                   "charger-watts=94\n~units=W\n"
                                                   "charger-name=96W Adapter\n"));
}

TEST(Battery, HasCapacitiesWhereTheSystemGivesThem) {
  Mac mac;
  add_item(mac.profiler, kPower,
           {{"_name", "spbattery_information"},
            {"sppower_battery_charge_info/sppower_battery_current_capacity", 6628},
            {"sppower_battery_charge_info/sppower_battery_max_capacity", 6738}});
  EXPECT_EQ(written(collect_battery, mac),
            battery("current-capacity=6628\n~units=mAh\nfull-capacity=6738\n~units=mAh\n"));
}

TEST(Battery, IsAbsentWithAChargerAlone) {
  Mac mac;
  add_item(mac.profiler, kPower,
           {{"_name", "sppower_ac_charger_information"}, {"sppower_ac_charger_watts", "94"}});
  EXPECT_EQ(written(collect_battery, mac), kEmptySnapshot);
}

TEST(Battery, SkipsValuesOfTheWrongKind) {
  Mac mac;
  add_item(mac.profiler, kPower,
           {{"_name", "spbattery_information"},
            {"sppower_battery_health_info", "none"},
            {"sppower_battery_charge_info/sppower_battery_state_of_charge", "71 percent"},
            {"sppower_battery_charge_info/sppower_battery_is_charging", 1},
            {"sppower_battery_model_info/item0/sppower_battery_serial_number", "BAT001"}});
  EXPECT_EQ(written(collect_battery, mac), kEmptySnapshot);
}

}  // namespace
