// Copies the process table from a kernel that provides it by sysctl: its size is asked for first, and the
// table may have grown when it is copied.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>

#include "platform/process_table.h"

// Room for processes that are started meanwhile. The kernel's own allowance is five of them, and from Mac OS
// X 10.7 on a table that does not fit is not copied at all.
constexpr size_t with_spare(size_t records) { return records + std::max<size_t>(records / 8, 64); }

// One reading. `sysctl` is called with a buffer and the address of its size, as sysctl(3) is: without a
// buffer it reports the size in bytes; with one it fills it and reports how much it filled. `record_of` makes
// a ProcessRecord of a KernelRecord. A table that still does not fit (ENOMEM) grew, with the records that the
// kernel copied all the same.
template <typename KernelRecord, typename Sysctl, typename RecordOf>
ProcessTable read_sysctl_table(const Sysctl& sysctl, const RecordOf& record_of) {
  ProcessTable table{ProcessTableStatus::unavailable, {}};
  size_t size = 0;
  if (sysctl(nullptr, &size) != 0) return table;
  const size_t capacity = with_spare(size / sizeof(KernelRecord));
  const std::unique_ptr<KernelRecord[]> records(new (std::nothrow) KernelRecord[capacity]);
  if (!records) return table;

  size = capacity * sizeof(KernelRecord);
  const bool filled = sysctl(records.get(), &size) == 0;
  if (!filled && errno != ENOMEM) return table;

  table.status = filled ? ProcessTableStatus::complete : ProcessTableStatus::grew;
  const size_t count = std::min(size / sizeof(KernelRecord), capacity);
  table.records.reserve(count);
  for (size_t i = 0; i < count; ++i) table.records.push_back(record_of(records[i]));
  return table;
}
