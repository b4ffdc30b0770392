// A machine, or what changed on it, as one page of HTML: nothing in it is fetched from anywhere, and its
// Content-Security-Policy lets no browser try.
#pragma once

#include <string>

#include "inv/file/inventory.h"

namespace inv {

std::string report_page(const Inventory& inventory);
std::string comparison_page(const Inventory& old_inventory, const Inventory& new_inventory);

}  // namespace inv
