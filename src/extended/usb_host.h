// USB devices as macOS 26 and later list them: in the profiler's SPUSBHostDataType, while SPUSBDataType is
// empty there.
#pragma once

#include "extended/inputs.h"

// Goes on with "/Peripherals/USB/Device:n". Buses, and hubs on which something hangs, stand for what is on
// them, as in the first mapping. A device on a place of the bus (location) that SPUSBDataType tells of is not
// repeated.
void collect_usb_host(InventoryTree& snapshot, const ExtendedInputs& inputs);
