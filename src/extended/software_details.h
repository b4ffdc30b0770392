// Where each application comes from and which processors it runs on, from the profiler's
// SPApplicationsDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Software-details/Soft:n" for each "/Software/Soft:n".
void collect_software_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
