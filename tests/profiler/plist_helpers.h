// Parsed property lists for tests, built from just their elements.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "profiler/property_list.h"

// The list that an output with these elements in its array parses to; null when they are not well-formed.
inline CFRef<CFArrayRef> parse_elements(const std::string& elements) {
  const std::string list = "<plist version=\"1.0\"><array>" + elements + "</array></plist>";
  return parse_profiler_output(
      {nullptr, copy_range(list.data(), list.data() + list.size()), static_cast<uint32_t>(list.size())});
}
