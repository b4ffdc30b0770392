// Thunderbolt buses with their ports, and the devices on them, from the profiler's SPThunderboltDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Peripherals/Thunderbolt/Bus:n" with a "Port:n" for each receptacle, and
// "/Peripherals/Thunderbolt/Device:n" for every device on any bus, including those in a chain; "depth" is 1
// for a device plugged into the Mac itself. An entry without a device name ("no_hardware") is skipped.
void collect_thunderbolt(InventoryTree& snapshot, const ExtendedInputs& inputs);
