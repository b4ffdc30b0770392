// The option that chooses a typed table instead of facts.
#pragma once

#include <string>

#include "inv/commands/command.h"

namespace inv {

// --table; `table` stays empty if it is not given.
void add_table_option(CLI::App& command, std::string& table);

}  // namespace inv
