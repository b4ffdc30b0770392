#include <sys/types.h>

#include <sys/sysctl.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include "platform/process_table.h"

namespace {

int table_name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};

ProcessRecord record_of(const kinfo_proc& process) {
  const char* name = process.kp_proc.p_comm;
  return {process.kp_proc.p_pid, process.kp_eproc.e_ppid, std::string(name, strnlen(name, MAXCOMLEN))};
}

}  // namespace

ProcessTable read_process_table() {
  ProcessTable table{ProcessTableStatus::unavailable, {}};
  size_t size = 0;
  if (sysctl(table_name, 3, nullptr, &size, nullptr, 0) != 0) return table;
  const size_t capacity = size / sizeof(kinfo_proc);
  const std::unique_ptr<kinfo_proc[]> processes(new (std::nothrow) kinfo_proc[capacity]);
  if (!processes) return table;

  size = capacity * sizeof(kinfo_proc);
  const bool filled = sysctl(table_name, 3, processes.get(), &size, nullptr, 0) == 0;
  if (!filled && errno != ENOMEM) return table;

  // On ENOMEM the kernel has copied the records that fit and tells their size as well.
  table.status = filled ? ProcessTableStatus::complete : ProcessTableStatus::grew;
  const size_t count = size / sizeof(kinfo_proc);
  table.records.reserve(count);
  for (size_t i = 0; i < count; ++i) table.records.push_back(record_of(processes[i]));
  return table;
}
