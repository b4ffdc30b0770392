// What Mac this is and what system runs on it, from the profiler's SPHardwareDataType, SPSoftwareDataType,
// SPMemoryDataType, SPDisplaysDataType and SPPowerDataType, and from sw_vers and sysctl.
#pragma once

#include "extended/inputs.h"

// Writes "/Platform". Of several graphics adapters the first that tells its cores, or its version of Metal,
// is taken. "laptop" is told only where the power data type is, "rosetta" only where the processor is
// Apple's.
void collect_platform(InventoryTree& snapshot, const ExtendedInputs& inputs);
