#include "collectors/processors.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "collectors/fields.h"
#include "profiler/units.h"

namespace {

// No Mac comes near; a larger figure is a broken list, which must not become a file of millions of elements.
constexpr int32_t kMostPackages = 1024;

struct Hardware {
  const Tag& item;
  int32_t packages;
  int32_t cores;
};

// A cache is reported for the machine as a whole or, on later systems, for each core.
struct Cache {
  const char* name;
  const char* key;
  const char* key_per_core;
};
constexpr Cache kCaches[] = {{"l2-cache-size", "l2_cache", "l2_cache_core"},
                             {"l3-cache-size", "l3_cache", "l3_cache_core"}};

void set_cache_size(Place& processor, const Hardware& hardware, const Cache& cache) {
  if (char* size = find_text(hardware.item, cache.key))
    processor.set_attribute(cache.name, Value(truncate_to_int64(size_to_kb(size)) / hardware.packages));
  if (char* size = find_text(hardware.item, cache.key_per_core)) {
    const double share = size_to_kb(size) * hardware.cores / hardware.packages;
    processor.set_attribute(cache.name, Value(truncate_to_int64(share)));
  }
}

void set_clock_speed(Place& processor, const Tag& item) {
  char* speed = find_text(item, "current_processor_speed");
  if (!speed) return;
  speed[std::strcspn(speed, " ")] = '\0';
  processor.set_attribute("current-clock-speed", Value(truncate_to_int64(speed_to_mhz(speed))));
}

void write_processor(Place& processor, const Hardware& hardware) {
  const Value* type = find_value(hardware.item, "cpu_type");
  // Without a name from the profiler, every package is called the first one: the console expects that.
  processor.set_value(type ? *type : text_value("CPU #1"));
  copy_field(processor, "core-count", hardware.item, "number_processors");
  for (const Cache& cache : kCaches) set_cache_size(processor, hardware, cache);
  set_clock_speed(processor, hardware.item);
}

}  // namespace

void collect_processors(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* item = first_item(profiler, "SPHardwareDataType");
  if (!item) return;
  const auto packages = static_cast<int32_t>(find_integer(*item, "packages"));
  const auto cores = static_cast<int32_t>(find_integer(*item, "number_processors"));
  const Hardware hardware = {*item, std::min(packages, kMostPackages), cores};

  Place processors(snapshot.root(), "/Processors");
  for (int32_t i = 1; i <= hardware.packages; ++i) {
    Place processor(processors, "Processor:" + std::to_string(i), Place::Names::distinct);
    write_processor(processor, hardware);
  }
}
