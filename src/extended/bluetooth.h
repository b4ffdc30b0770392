// The Bluetooth controller and the devices that it knows, from the profiler's SPBluetoothDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Peripherals/Bluetooth" and "/Peripherals/Bluetooth/Device:n". Up to macOS 11 a device says itself
// whether it is connected, from macOS 12 on the list does in which it stands.
//
// The profiler gives a device's name as a key, of which the raw tree keeps the original as the annotation
// "key" where it had to change it.
void collect_bluetooth(InventoryTree& snapshot, const ExtendedInputs& inputs);
