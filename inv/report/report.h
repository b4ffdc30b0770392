// A machine, or what changed on it, as one HTML page, which fetches nothing and has a Content-Security-Policy
// that prevents it.
#pragma once

#include "inv/base/text_sink.h"
#include "inv/file/inventory.h"

namespace inv {

// Each goes into the sink row by row. Of rows beyond what a browser shows in any useful time, the number is
// given in their place.
void report_page(const Inventory& inventory, const TextSink& sink);
void comparison_page(const Inventory& old_inventory, const Inventory& new_inventory, const TextSink& sink);

}  // namespace inv
