// The installed applications, from the profiler's SPApplicationsDataType.
#pragma once

#include "zxml/zXML.h"

// Writes "/Software/Soft:n" for every application in the profiler's order. The text of the date in the
// profiler tree keeps only its day.
void collect_applications(InventoryTree& snapshot, InventoryTree& profiler);
