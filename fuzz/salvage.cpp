// What is salvaged is always a list that parses, and copies into a tree.
#include <cstdint>
#include <cstdlib>

#include "profiler/plist_dump.h"
#include "profiler/property_list.h"
#include "profiler/salvage.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* text = reinterpret_cast<const char*>(bytes);
  const ProfilerOutput clean =
      salvage_output({"", copy_range(text, text + size), static_cast<uint32_t>(size)});
  if (!clean.text) return 0;
  const CFRef<CFArrayRef> list = parse_profiler_output(clean);
  if (!list) std::abort();
  InventoryTree tree(1, "Macintosh");
  dump_profiler(list.get(), tree);
  if (tree.serialize(Layout::whole_compressed).empty()) std::abort();
  return 0;
}
