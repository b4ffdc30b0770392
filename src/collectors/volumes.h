// What disks have in common, wherever they are plugged in: sizes with their byte counts, and the space on
// their volumes.
#pragma once

#include "collectors/fields.h"

// The two keys under which the profiler gives one amount of space: a text ("465,76 GB") and, from Mac OS
// X 10.6 on, a number of bytes, which counts where it is present (as 0 when it is of another kind).
struct SpaceKeys {
  const char* text;
  const char* bytes;
};

constexpr SpaceKeys kSizeKeys = {"size", "size_in_bytes"};
constexpr SpaceKeys kFreeKeys = {"free_space", "free_space_in_bytes"};

// In GB of 10^9 bytes; `round` rounds what comes from the text (see size_to_decimal_gb).
double space_in_gb(const Tag& item, const SpaceKeys& keys, bool round);
// The same space in bytes, as the annotation "base-value" has it.
Text space_base_value(const Tag& item, const SpaceKeys& keys);

// Writes "size" of a disk in whole GB: cut off where the profiler counts bytes, rounded where only its size
// text is there.
void write_disk_size(Place& disk, const Tag& device);

// In GB of 10^9 bytes.
struct VolumeSpace {
  double size = 0;  // 0 when the profiler does not say
  double free = 0;
  bool has_free = false;
};

// Writes "size" and "free" of a partition, each with its "base-value" and only when its text is present, and
// returns what it wrote.
VolumeSpace write_volume_space(Place& partition, const Tag& volume);

// Writes "used%", annotated with the used GB ("pos"), the size in GB ("max") and the unit ("val-units"). It
// is 0 where the size is 0, or where the percentage is not a number or does not fit 32 bits.
void write_used_share(Place& partition, const VolumeSpace& space);
