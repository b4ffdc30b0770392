// Thunderbolt buses with their ports, and what is plugged in, from the profiler's SPThunderboltDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Peripherals/Thunderbolt/Bus:n" with a "Port:n" for each receptacle, and
// "/Peripherals/Thunderbolt/Device:n" for every device on any bus, also those behind another one; "depth" is
// 1 for a device on the Mac itself. An entry without device name ("no_hardware") is neither.
void collect_thunderbolt(InventoryTree& snapshot, const ExtendedInputs& inputs);
