// What the extended scan asks for beyond the default one: further data types of the system profiler, and
// small tools.
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

// Runs all of them, one after another; tests lower the limits. Nothing is spliced: what one of them prints
// cannot damage another. A tool is asked once.
Sources fetch_sources(const SeriesLimits& limits = SeriesLimits(), const Pause& pause = pause_for);

// The data types as a raw tree "Additional" (plist_dump.h), each parsed by itself, and salvaged by itself.
std::unique_ptr<InventoryTree> read_additional_types(int32_t byte_order_flag,
                                                     const std::vector<ProfilerOutput>& types);

// Each output behind a line that has its command, in the order of their runs; those that printed nothing are
// left out.
std::vector<std::string> labelled_outputs(const Sources& sources);
