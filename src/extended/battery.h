// The battery and its charger, from the profiler's SPPowerDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Battery" where the profiler tells of a battery; a charger alone gives nothing. The condition and
// the capacity are the system's own words.
void collect_battery(InventoryTree& snapshot, const ExtendedInputs& inputs);
