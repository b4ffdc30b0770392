#include "extended/extended.h"

void collect_extended(InventoryTree&, const ExtendedInputs&) {}
