// The memory slots, from the profiler's SPMemoryDataType, and the machine's memory as a whole, from its
// SPHardwareDataType.
#pragma once

#include "zxml/zXML.h"

// Writes "/Memory/Memory-slot:n" for every slot, numbered through all bank groups, empty slots included;
// capacity in MB. Then "/Memory/General-info/physical-memory" in MB. Either part is written without the other
// when the profiler reports only one.
void collect_memory(InventoryTree& snapshot, InventoryTree& profiler);
