// The energy saver's settings.
#pragma once

#include "zxml/zXML.h"

// Writes "/System/PowerManagement/Profile:N" for every profile (mains, battery, ...) in the first
// SPPowerDataType item that is named "sppower_information", N from 1 on, with its timers as the profiler
// gives them and its switches as yes or no. The settings for mains power are also written directly to
// "/System/PowerManagement", whatever number that profile has. Nothing without such an item.
void collect_power_management(InventoryTree& snapshot, const InventoryTree& profiler);
