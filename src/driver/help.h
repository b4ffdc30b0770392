// What the program tells of itself instead of scanning.
#pragma once

#include "driver/options.h"

// Prints what was asked for, and says whether anything was. Of help and version the help counts, which leads
// to the other.
bool answer_about_program(const Options& options);
