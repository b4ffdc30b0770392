// What `inv summary` prints: a screen for one machine, a line for each of several, or the same as JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/facts/overview.h"
#include "inv/show/terminal.h"

namespace inv {

std::string summary_screen(const Overview& overview, const Terminal& terminal);

// Lines that fit the terminal, or 80 columns. They name the files if two machines have the same name.
std::string summary_table(const std::vector<Overview>& overviews, const Terminal& terminal);

// The columns that a table can be sorted by: name, model, ...
std::vector<std::string_view> sort_names();
// Sorts by one of these columns; the smallest and the latest first, unknown values last. The sort is stable.
void sort_overviews(std::vector<Overview>& overviews, std::string_view name);

// An array with an object for each: unknown facts have no member, empty lists are present.
std::string summary_json(const std::vector<Overview>& overviews);

}  // namespace inv
