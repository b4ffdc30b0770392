// The processors, from the profiler's SPHardwareDataType.
#pragma once

#include "zxml/zXML.h"

// Writes "/Processors/Processor:n" for every package: its type, the machine's core count, its share of the
// caches in KB and its clock in MHz. Nothing when the profiler reports no package. The clock speed's text in
// the profiler tree keeps only its number.
void collect_processors(InventoryTree& snapshot, InventoryTree& profiler);
