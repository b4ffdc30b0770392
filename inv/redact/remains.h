// What no pseudonym stands for in a redacted file, and may still tell whose it is.
#pragma once

#include <string>

#include "inv/file/inventory.h"

namespace inv {

// As a list with numbers, for the one who gives the file away: "150 application names, 12 process names, 3
// host-like words: www.example.com, ...". Empty for a file that has none of it.
std::string what_remains(const Inventory& inventory);

}  // namespace inv
