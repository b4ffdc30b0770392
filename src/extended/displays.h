// Every display that a graphics driver reports, with or without EDID, and the graphics adapters, from the
// profiler's SPDisplaysDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Video/Displays/display:n", numbered from 1 across all adapters, and
// "/Video/Details/Video-adapter:n" next to "/Video/Video-devices". An empty connector is not a display.
// "built-in" is written where the display says how it is connected or what it is.
void collect_display_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
