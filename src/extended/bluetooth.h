// The Bluetooth controller and the devices that it knows, from the profiler's SPBluetoothDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Peripherals/Bluetooth" and "/Peripherals/Bluetooth/Device:n". Up to macOS 11 each device says
// whether it is connected; from macOS 12 on there is one list of connected devices and one of the others.
//
// The profiler uses a device's name as a key. Where the raw tree had to change it, the original is in the
// annotation "key".
void collect_bluetooth(InventoryTree& snapshot, const ExtendedInputs& inputs);
