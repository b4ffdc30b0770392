// Pictures in a report, as inline SVG. Their colours come from the page's style.
#pragma once

#include <string>

#include "inv/facts/overview.h"

namespace inv {

// The memory slots in a row, filled or empty, with their contents; empty if no slots are known.
std::string memory_picture(const std::vector<MemorySlot>& slots);
// A volume's used space as a bar.
std::string volume_bar(const Volume& volume);
// The line about the shared space of these volumes; empty if it is unknown. `owner` is HTML before their
// names.
std::string volume_line(const std::vector<Volume>& volumes, const std::string& owner = "");
// Whether somebody should make room on a volume.
bool is_almost_full(const Volume& volume);
// A percentage as a bar; the number is beside it as text.
std::string share_bar(unsigned percent);

}  // namespace inv
