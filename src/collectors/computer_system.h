// The computer as a whole: itself, its chassis, its memory slots and its power management.
#pragma once

#include "zxml/zXML.h"

// Writes, each only when its data type has items:
// - "/System/Computer-system" and "/System/Chassis" from the first SPHardwareDataType item; ioreg is run for
//   the platform UUID only when the item has none;
// - "/System/Mem-slots/mem-slot:N" from SPMemoryDataType, used or not, with the capacity in MB. N is the
//   item's position, or its position in its group of slots, so that every group begins again with slot 1;
// - "/System/PowerManagement" from SPPowerDataType: see power_management.h.
void collect_system(InventoryTree& snapshot, InventoryTree& profiler);
