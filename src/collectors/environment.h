// The environment variables of the scan itself, from "env".
#pragma once

#include <vector>

#include "driver/base/text.h"
#include "zxml/zXML.h"

struct EnvironmentVariable {
  Text name;
  Text value;  // null if it is left out
};

// The variables that env prints, up to the first empty line. A line without "=" is left out, further "=" stay
// in the value; a value of several lines keeps its first one.
std::vector<EnvironmentVariable> parse_environment(const char* output);

// Writes "/Environment/env-var:NAME" for each variable; PATH is marked as a list that ":" splits, and an
// empty value in place of one that is left out as "left-out". A name with "+", "*" or "~" after its last
// slash would break the tree's text and is left out.
void write_environment(InventoryTree& snapshot, const std::vector<EnvironmentVariable>& variables);

void collect_environment(InventoryTree& snapshot);
// Only the names, from the scan's own environment: env is not run, since a line of a longer value that it
// prints may look like a variable.
void collect_environment_names(InventoryTree& snapshot);
