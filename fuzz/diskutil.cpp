// What `diskutil info` prints of a disk.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "collectors/usb.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* start = reinterpret_cast<const char*>(bytes);
  const Text output = copy_range(start, start + size);
  const Text name = parse_media_name(output.get());
  if (name && !std::strstr(output.get(), name.get())) std::abort();
  return 0;
}
