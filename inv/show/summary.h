// What `inv summary` says: a screen about one machine, a line about each of several, or the same as JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/facts/overview.h"
#include "inv/show/terminal.h"

namespace inv {

std::string summary_screen(const Overview& overview, const Terminal& terminal);

// Lines that fit the terminal, or 80 columns. They name the files where two machines have one name.
std::string summary_table(const std::vector<Overview>& overviews, const Terminal& terminal);

// The columns that a table can be sorted by: name, model, ...
std::vector<std::string_view> sort_names();
// In the order of a column, by one of these names; the smallest and the youngest first, what is not known
// last, equal ones as they were.
void sort_overviews(std::vector<Overview>& overviews, std::string_view name);

// An array with an object for each: what is not known has no member, lists are there when they are empty.
std::string summary_json(const std::vector<Overview>& overviews);

}  // namespace inv
