// Outputs of the profiler for tests.
#pragma once

#include <string>

#include "profiler/acquisition.h"

inline ProfilerOutput output_of(const std::string& text) {
  return {"SPTestDataType", copy_range(text.data(), text.data() + text.size()),
          static_cast<uint32_t>(text.size())};
}

// In the frame that the tool puts around the elements of its list.
inline std::string framed(const std::string& elements) { return kPrologue + elements + kEpilogue; }
