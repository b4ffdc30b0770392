// The installed packages and updates, from the profiler's SPInstallHistoryDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Packages/Package:n" in the profiler's order.
void collect_packages(InventoryTree& snapshot, const ExtendedInputs& inputs);
