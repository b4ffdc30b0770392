// What a scan did not learn, and why.
#pragma once

#include <string>
#include <vector>

#include "inv/file/inventory.h"

namespace inv {

// A text for each reason, with what is unknown for it: "no profiler output: hardware, network, software
// unknown", "scanned without /extended: disks, processor", "not on this Mac: sw_vers". A tool that the Mac's
// system never had is not listed. The names of commands are as in the file.
std::vector<std::string> gaps_in(const Inventory& inventory);

}  // namespace inv
