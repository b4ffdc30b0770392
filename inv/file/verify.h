// Whether a console can import a file.
#pragma once

#include "inv/file/inventory.h"

namespace inv {

struct Verdict {
  Faults faults;  // in the order in which a console would encounter them; empty if the file is valid
  size_t lines_not_utf8 = 0;  // not a fault: a console shows them as best it can
};

Verdict verify(const Inventory& inventory);

}  // namespace inv
