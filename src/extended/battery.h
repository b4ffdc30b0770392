// The battery and its charger, from the profiler's SPPowerDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Battery" where the profiler lists a battery; a charger alone writes nothing. Condition and
// capacity are in the system's own words.
void collect_battery(InventoryTree& snapshot, const ExtendedInputs& inputs);
