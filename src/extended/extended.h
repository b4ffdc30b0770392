// The facts that only the extended scan has: what a current Mac can say and the default scan leaves out.
#pragma once

#include "extended/inputs.h"

// Writes them into a finished snapshot, of which nothing is moved or changed: new elements of a list continue
// its numbers, everything else gets elements of its own. A fact is a copy of what its source says; where a
// key or a tool is missing, or says something unexpected, only that fact is left out.
//
// Without people, devices that are paired with the Mac are left out, and who signed an application.
//
// Size texts of the raw trees get their decimal comma replaced (see units.h).
void collect_extended(InventoryTree& snapshot, const ExtendedInputs& inputs);
