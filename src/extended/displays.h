// Every display as the graphics drivers tell it, with or without EDID, and the graphics adapters, from the
// profiler's SPDisplaysDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Video/Displays/display:n", numbered through all adapters from 1, and
// "/Video/Details/Video-adapter:n" beside
// "/Video/Video-devices". A connector on which nothing hangs is no display. "built-in" is told where the
// display says how it is connected or what it is.
void collect_display_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
