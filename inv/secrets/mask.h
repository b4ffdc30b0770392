// Masks the secrets of an inventory, for output that leaves the machine on which it is read.
#pragma once

#include "inv/file/inventory.h"

namespace inv {

// Puts "••• (40 characters)" in place of the secrets in the trees, and returns how many there were. All rules
// apply to command lines, environment variables and other values that can hold anything, and to variable
// names, since a line of a longer value may look like one. Everywhere else only unmistakable secrets count.
// The texts of the trees do not change (Document::text, Document::original).
size_t mask_secrets(Inventory& inventory);

}  // namespace inv
