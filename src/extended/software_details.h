// Where the applications come from and for which processors they are, from the profiler's
// SPApplicationsDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Software-details/Soft:n" beside "/Software/Soft:n".
void collect_software_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
