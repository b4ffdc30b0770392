// Whether a console can import a file.
#pragma once

#include "inv/file/inventory.h"

namespace inv {

struct Verdict {
  Faults faults;              // in the order in which a console would meet them; empty: the file is valid
  size_t lines_not_utf8 = 0;  // which a console shows as it can: not a fault
};

Verdict verify(const Inventory& inventory);

}  // namespace inv
