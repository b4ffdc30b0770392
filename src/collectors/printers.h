// The printers that are set up on the machine.
#pragma once

#include "zxml/zXML.h"

// Writes "/Peripherals/Printers/Printer:N" for every item of SPPrintersDataType that says whether it is the
// default printer. N is the item's position from 1 on, so the numbers have gaps where an item was left out.
// Missing keys leave their attributes out; a missing data type writes nothing.
void collect_printers(InventoryTree& snapshot, InventoryTree& profiler);
