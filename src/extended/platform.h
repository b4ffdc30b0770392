// Which Mac this is and which system runs on it, from the profiler's SPHardwareDataType, SPSoftwareDataType,
// SPMemoryDataType, SPDisplaysDataType and SPPowerDataType, and from sw_vers and sysctl.
#pragma once

#include "extended/inputs.h"

// Writes "/Platform". Of several graphics adapters, the first that gives a number of cores, or a version of
// Metal, is used. "laptop" is written only where there is power data, "rosetta" only where the processor is
// Apple's.
void collect_platform(InventoryTree& snapshot, const ExtendedInputs& inputs);
