// Pictures of a report, as SVG within the page. Their colours come from the page's style.
#pragma once

#include <string>

#include "inv/facts/overview.h"

namespace inv {

// The memory slots in a row, filled or empty, with what is in them; nothing when none is known.
std::string memory_picture(const std::vector<MemorySlot>& slots);
// A volume's used space as a bar.
std::string volume_bar(const Volume& volume);

}  // namespace inv
