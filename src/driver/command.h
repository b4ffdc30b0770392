// Running the system's own tools through the shell: the only way in for facts, but for the process table.
#pragma once

#include <cstdint>

#include "driver/text.h"

// Runs a command line and returns everything that it wrote to its standard output, NUL-terminated, and the number of bytes through
// `length`. Its standard error goes wherever this program's goes; its exit status is not looked at. A command that writes nothing gives
// an empty text; none, and length 0, only when no shell could be started.
// `chunk` is the number of bytes per read and the size of the first buffer; at least 1.
Text run_command(const char* command_line, uint32_t* length, uint32_t chunk);
