// A text on its way into a tree: whatever it is, it stays on its line in the tree's own text.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "zxml/value.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* start = reinterpret_cast<const char*>(bytes);
  const Value value = text_value(copy_range(start, start + size).get());
  if (std::strchr(value.text(), '\n')) std::abort();
  return 0;
}
