// The text in which the profiler prints a monitor's EDID.
#include <cstdint>
#include <cstdlib>

#include "collectors/edid.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* start = reinterpret_cast<const char*>(bytes);
  const EdidInfo info = decode_edid(copy_range(start, start + size).get());
  // Eight standard timings, and six more in each of the four descriptors.
  if (info.modes.size() > 8 + 4 * 6) std::abort();
  return 0;
}
