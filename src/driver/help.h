// Help and version, printed instead of scanning.
#pragma once

#include "driver/options.h"

// Prints help or version if asked to, and returns whether it did. Help takes precedence, as it mentions the
// version.
bool answer_about_program(const Options& options);
