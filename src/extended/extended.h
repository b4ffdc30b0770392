// The facts that only the extended scan tells: what a Mac of today has and the console's first mapping leaves
// out.
#pragma once

#include "extended/inputs.h"

// Writes them into a finished snapshot. Whatever stands there already keeps its place and its value: new
// elements of a list go on with its numbers, everything else gets elements of its own. A fact is a copy of
// what its source says; where a key or a tool is missing, or tells something else than expected, only that
// fact is left out.
//
// Size texts of the raw trees get their decimal comma replaced (see units.h).
void collect_extended(InventoryTree& snapshot, const ExtendedInputs& inputs);
