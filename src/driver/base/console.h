// Lines for the program that reads our standard output while the scan runs.
#pragma once

#include "driver/base/text.h"

// Formats to standard output and flushes it, so that a reader of the pipe sees the text at once.
void print_now(const char* format, ...) PRINTF_FORMAT(1, 2);
