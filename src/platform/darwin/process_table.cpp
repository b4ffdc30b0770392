#include <sys/types.h>

#include <sys/sysctl.h>

#include <algorithm>
#include <iterator>

#include "platform/process_table.h"
#include "platform/sysctl_table.h"

namespace {

int all_processes(void* records, size_t* size) {
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
  return sysctl(name, 3, records, size, nullptr, 0);
}

ProcessRecord record_of(const kinfo_proc& process) {
  const auto& name = process.kp_proc.p_comm;
  // The last byte is a terminator's.
  return {process.kp_proc.p_pid, process.kp_eproc.e_ppid,
          std::string(name, std::find(name, std::end(name) - 1, '\0'))};
}

}  // namespace

ProcessTable read_process_table() { return read_sysctl_table<kinfo_proc>(all_processes, record_of); }
