// What the extended scan runs beyond the default one: further data types of the system profiler, and small
// tools.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "extended/inputs.h"
#include "profiler/acquisition.h"

// The bytes as they came.
struct Sources {
  std::vector<ProfilerOutput> types;  // in the order of their runs
  ToolOutputs tools;
};

// Runs them one after another; tests lower the limits. The outputs are not spliced, so one cannot damage
// another. A tool runs once, without retries.
Sources fetch_sources(const SeriesLimits& limits = SeriesLimits(), const Pause& pause = pause_for);

// The data types as a raw tree "Additional" (plist_dump.h); each is parsed, and if need be salvaged, on its
// own.
std::unique_ptr<InventoryTree> read_additional_types(int32_t byte_order_flag,
                                                     const std::vector<ProfilerOutput>& types);

// Each output after a line with its command, in the order of their runs; empty outputs are left out.
std::vector<std::string> labelled_outputs(const Sources& sources);
