// An inventory without its secrets, for what leaves the machine on which it is read.
#pragma once

#include "inv/file/inventory.h"

namespace inv {

// Puts "••• (40 characters)" in place of the secrets in the trees, and returns how many there were. Command
// lines, variables of the environment and what else can hold anything are searched by all rules, and the
// names of variables too: a line of a longer value may look like one. Everywhere else only what is
// unmistakable counts. The texts of the trees stay as they are (Document::text, Document::original).
size_t mask_secrets(Inventory& inventory);

}  // namespace inv
