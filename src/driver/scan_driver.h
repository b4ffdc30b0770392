// One scan from start to end: acquiring, mapping, naming and saving.
#pragma once

#include <cstdint>

#include "driver/base/omissions.h"

// What main decides for the whole run.
struct ScanContext {
  int32_t byte_order_flag = 1;  // for every tree and the container: most significant byte first
  int32_t suspended = 0;        // not 0: the driver does nothing
  int32_t log_enabled = 0;      // not 0: stage banners go to standard output
};

// Runs one scan and saves its .inv file in the working directory; with `debug`, the raw profiler output and a
// reduced summary. Every outcome is reported on the console: the result line on standard output, "Cannot
// create file :" on standard error. `silent` makes the run report for a calling program: percentage lines,
// and the bare file name as the result. `ip` is the address of the adapter to use, or null for the machine's
// first; `login` is stored as it is. `extended` is null for the default scan; otherwise the scan also
// collects what only recent systems report, and records this text as the options given. What is `omitted` is
// not collected; a debug file still holds all of the profiler's output.
void ScanDriver(const ScanContext& context, bool silent, bool debug, const char* ip, const char* login,
                const char* extended = nullptr, const Omissions& omitted = {});
