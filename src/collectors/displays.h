// Monitors and graphics adapters, from the profiler's SPDisplaysDataType.
#pragma once

#include "zxml/zXML.h"

// Writes "/Video/Monitors/Monitor:%d" for every display of every adapter (spdisplays_ndrvs), numbered through
// from 1, and "/Video/Video-devices/Video-adapter:%d" for every adapter, numbered by its position from 1.
//
// All but "main-monitor" is decoded from the EDID text of the display (_spdisplays_edid); a display without
// one keeps its number and nothing else, except that an empty connector (spdisplays_display_connector)
// without one takes no number. An adapter without model (sppci_model) is an element without value; "ram" is
// its memory in MB (spdisplays_vram), 0 when that is missing or not a size.
//
// Nothing is written when the data type or its items are missing. Size texts of the profiler tree get their
// decimal comma replaced (see units.h).
void collect_displays(InventoryTree& snapshot, InventoryTree& profiler);
