// What has no pseudonym in a redacted file, and may still identify the machine.
#pragma once

#include <string>

#include "inv/file/inventory.h"

namespace inv {

// As a list with counts, for whoever gives the file away: "150 application names, 12 process names, 3
// host-like words: www.example.com, ...". Empty if there is nothing of the kind.
std::string what_remains(const Inventory& inventory);

}  // namespace inv
