// Compression for the container and its sections.
#pragma once

#include "zxml/bytes.h"

// One complete zlib stream of the input at the best level; empty when the compressor cannot be initialised.
// The result is longer than a tiny or incompressible input. A fault inside the compressor ends the program
// with a line on standard error that names `source`, the caller's source file, and the failed condition: a
// damaged stream must never reach a file.
Bytes deflate_buffer(const void* input, size_t length, const char* source);
