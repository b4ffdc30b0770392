// Pictures of a report, as SVG within the page. Their colours come from the page's style.
#pragma once

#include <string>

#include "inv/facts/overview.h"

namespace inv {

// The memory slots in a row, filled or empty, with what is in them; nothing when none is known.
std::string memory_picture(const std::vector<MemorySlot>& slots);
// A volume's used space as a bar.
std::string volume_bar(const Volume& volume);
// The line about the space of these volumes, which share it; nothing when it is not known. `owner` is HTML
// that stands before their names.
std::string volume_line(const std::vector<Volume>& volumes, const std::string& owner = "");
// Whether somebody should make room on a volume.
bool is_almost_full(const Volume& volume);
// A part of a whole as a bar, beside which the number stands as text.
std::string share_bar(unsigned percent);

}  // namespace inv
