// USB devices on macOS 26 and later: in the profiler's SPUSBHostDataType, while SPUSBDataType is empty there.
#pragma once

#include "extended/inputs.h"

// Continues "/Peripherals/USB/Device:n". Buses, and hubs with devices on them, are not elements themselves,
// as in the default scan. A device at a location that SPUSBDataType lists is not repeated.
void collect_usb_host(InventoryTree& snapshot, const ExtendedInputs& inputs);
