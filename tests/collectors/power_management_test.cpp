#include "collectors/power_management.h"

#include <gtest/gtest.h>

#include "collectors/computer_system.h"
#include "tests/collectors/tree_helpers.h"

namespace {

std::string collected_power(std::initializer_list<Item> items) {
  InventoryTree profiler = profiler_with("SPPowerDataType", items);
  return collected(collect_system, profiler);
}

std::string power(const std::string& lines) { return "+Snapshot=\n+System=\n" + lines + "-\n-\n"; }

TEST(PowerManagement, NumbersProfilesInOrderAndSummarisesMainsPower) {
  EXPECT_EQ(collected_power({{
                {"_name", "sppower_information"},
                {"Battery_Power/System_Sleep_Timer", "10"},
                {"Battery_Power/Disk_Sleep_Timer", "5"},
                {"Battery_Power/Display_Sleep_Timer", "2"},
                {"Battery_Power/ReduceBrightness", "Yes"},
                {"AC_Power/System_Sleep_Timer", 0},
                {"AC_Power/Disk_Sleep_Timer", "10"},
                {"AC_Power/Display_Sleep_Timer", "15"},
                {"AC_Power/Wake_On_LAN", "Yes"},
            }}),
            power("+PowerManagement=\n"
                  "system-sleep-timer=0\n"
                  "disk-sleep-timer=10\n"
                  "display-sleep-timer=15\n"
                  "wake-on-lan=1\n"
                  "*Profile:1=Battery_Power\n"
                  "system-sleep-timer=10\n"
                  "disk-sleep-timer=5\n"
                  "display-sleep-timer=2\n"
                  "reduce-brightness=1\n"
                  "*Profile:2=AC Power\n"
                  "system-sleep-timer=0\n"
                  "disk-sleep-timer=10\n"
                  "display-sleep-timer=15\n"
                  "wake-on-lan=1\n"
                  "-\n"));
}

TEST(PowerManagement, WritesEverySettingOfAProfile) {
  // In another order than the profiler's, which is not that of the settings either.
  EXPECT_EQ(collected_power({{
                {"_name", "sppower_information"},
                {"UPS_Power/Display_Sleep_Uses_Dim", "No"},
                {"UPS_Power/ReduceBrightness", "Yes"},
                {"UPS_Power/Wake_On_Clamshell_Open", "No"},
                {"UPS_Power/Wake_On_AC_Change", "Yes"},
                {"UPS_Power/Wake_On_LAN", "No"},
                {"UPS_Power/Automatic_Restart_On_Power_Loss", "Yes"},
                {"UPS_Power/Sleep_On_Power_Button", "No"},
                {"UPS_Power/Display_Sleep_Timer", "3"},
                {"UPS_Power/Disk_Sleep_Timer", "2"},
                {"UPS_Power/System_Sleep_Timer", "1"},
            }}),
            power("+PowerManagement=\n"
                  "*Profile:1=UPS_Power\n"
                  "system-sleep-timer=1\n"
                  "disk-sleep-timer=2\n"
                  "display-sleep-timer=3\n"
                  "sleep-on-power-button=0\n"
                  "auto-restart-on-power-loss=1\n"
                  "wake-on-lan=0\n"
                  "wake-on-ac-change=1\n"
                  "wake-on-clamshell-open=0\n"
                  "reduce-brightness=1\n"
                  "display-sleep-uses-dim=0\n"
                  "-\n"));
}

TEST(PowerManagement, CountsOnlyTheExactYes) {
  EXPECT_EQ(collected_power({{
                {"_name", "sppower_information"},
                {"UPS_Power/Wake_On_LAN", "yes"},
                {"UPS_Power/Wake_On_AC_Change", 1},
            }}),
            power("+PowerManagement=\n"
                  "*Profile:1=UPS_Power\n"
                  "wake-on-lan=0\n"
                  "wake-on-ac-change=0\n"
                  "-\n"));
}

TEST(PowerManagement, ReadsTheFirstItemOfThatNameOnly) {
  EXPECT_EQ(collected_power({
                {{"_name", "spbattery_information"}, {"AC_Power/Disk_Sleep_Timer", "1"}},
                {{"_name", "sppower_information"}, {"AC_Power/Disk_Sleep_Timer", "2"}},
                {{"_name", "sppower_information"}, {"AC_Power/Disk_Sleep_Timer", "3"}},
            }),
            power("+PowerManagement=\n"
                  "disk-sleep-timer=2\n"
                  "*Profile:1=AC Power\n"
                  "disk-sleep-timer=2\n"
                  "-\n"));
}

TEST(PowerManagement, WritesNothingWithoutPowerInformation) {
  EXPECT_EQ(collected_power({{{"_name", "spbattery_information"}, {"AC_Power/Disk_Sleep_Timer", "1"}}}),
            "*Snapshot=\n");
  EXPECT_EQ(collected_power({{{"_name", "sppower_information"}}}), "*Snapshot=\n");
  EXPECT_EQ(collected_power({{{"_name", 1}}}), "*Snapshot=\n");
}

}  // namespace
