// What `inv summary` says: a screen about one machine, or a line about each of several.
#pragma once

#include <string>
#include <vector>

#include "inv/facts/overview.h"
#include "inv/show/terminal.h"

namespace inv {

std::string summary_screen(const Overview& overview, const Terminal& terminal);
std::string summary_table(const std::vector<Overview>& overviews);

}  // namespace inv
