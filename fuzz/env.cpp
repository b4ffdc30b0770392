// The environment as env prints it, and the elements made from it.
#include <cstdint>

#include "collectors/environment.h"
#include "fuzz/well_formed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* start = reinterpret_cast<const char*>(bytes);
  InventoryTree snapshot(1, "Snapshot");
  write_environment(snapshot, parse_environment(copy_range(start, start + size).get()));
  expect_well_formed(snapshot);
  expect(!snapshot.serialize(Layout::whole_compressed).empty());
  return 0;
}
