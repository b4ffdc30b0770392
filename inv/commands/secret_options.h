// The option --secrets, for every command whose output leaves this machine: without it secrets are masked.
#pragma once

#include "inv/commands/command.h"

namespace inv {

void add_secrets(CLI::App& command, bool& keep_secrets);

// Masks the secrets of an inventory unless they are to be kept, and returns how many.
size_t mask_unless_kept(bool keep_secrets, Inventory& inventory);

// Says on standard error how many secrets a command masked, if any.
void report_masked(const char* command, size_t count);

}  // namespace inv
