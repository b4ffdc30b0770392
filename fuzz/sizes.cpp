// Sizes with units, and the helpers that cut a tool's output.
#include <cstdint>

#include "profiler/units.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* start = reinterpret_cast<const char*>(bytes);
  const Text text = copy_range(start, start + size);
  size_to_gb(text.get());
  size_to_gb_binary(text.get());
  size_to_mb(text.get());
  size_to_kb(text.get());
  size_to_bytes(text.get());
  size_to_decimal_gb(text.get(), true);
  size_to_decimal_gb(text.get(), false);
  truncate_to_int32(size_to_kb(text.get()));
  truncate_to_uint32(size_to_kb(text.get()));
  copy_line(text.get());
  copy_word(text.get());
  trim(text.get(), " \t\n", kTrimBoth);
  return 0;
}
