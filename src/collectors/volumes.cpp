#include "collectors/volumes.h"

#include "profiler/units.h"

namespace {

double write_space(Place& partition, const char* name, const Tag& volume, const SpaceKeys& keys) {
  const double space = space_in_gb(volume, keys, false);
  partition.set_attribute(name, Value(space), "base-value", space_base_value(volume, keys).get());
  return space;
}

int64_t used_percentage(double used, double size) {
  if (size == 0) return 0;
  const double percentage = used / size * 100;
  constexpr double kBeyond = 2147483648.0;
  const bool fits = -kBeyond - 1 < percentage && percentage < kBeyond;
  return fits ? truncate_to_int32(percentage) : 0;
}

}  // namespace

double space_in_gb(const Tag& item, const SpaceKeys& keys, bool round) {
  if (!find_value(item, keys.bytes)) return size_to_decimal_gb(find_text(item, keys.text), round);
  return bytes_to_decimal_gb(static_cast<uint64_t>(find_integer(item, keys.bytes)));
}

Text space_base_value(const Tag& item, const SpaceKeys& keys) {
  const bool counted = find_value(item, keys.bytes) != nullptr;
  return byte_count_text(counted ? find_integer(item, keys.bytes)
                                 : size_to_bytes(find_text(item, keys.text)));
}

void write_disk_size(Place& disk, const Tag& device) {
  disk.set_attribute("size", Value(truncate_to_int64(space_in_gb(device, kSizeKeys, true))), "base-value",
                     space_base_value(device, kSizeKeys).get());
}

VolumeSpace write_volume_space(Place& partition, const Tag& volume) {
  VolumeSpace space;
  if (find_text(volume, kSizeKeys.text)) space.size = write_space(partition, "size", volume, kSizeKeys);
  space.has_free = find_text(volume, kFreeKeys.text) != nullptr;
  if (space.has_free) space.free = write_space(partition, "free", volume, kFreeKeys);
  return space;
}

void write_used_share(Place& partition, const VolumeSpace& space) {
  const double used = space.size - space.free;
  partition.set_attribute("used%", Value(used_percentage(used, space.size)), "pos",
                          format_string("%.2lf", used).get());
  partition.annotate_attribute("used%", "max", format_string("%.2lf", space.size).get());
  partition.annotate_attribute("used%", "val-units", "GB");
}
