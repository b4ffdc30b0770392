// The kernel's process table: the one fact that comes from the kernel itself, since `ps` has no format in
// which a short name can be recognised safely.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct ProcessRecord {
  int32_t pid;
  int32_t ppid;
  std::string name;  // the kernel's short command name (p_comm): at most 16 bytes, without its path
};

enum class ProcessTableStatus {
  complete,
  grew,  // processes were started while the table was copied: use what came, if anything, then read again
  unavailable,  // no records
};

struct ProcessTable {
  ProcessTableStatus status;
  std::vector<ProcessRecord> records;  // in the kernel's order; the kernel task (pid 0) may be among them
};

// One reading of the table. A process that ends meanwhile is simply absent.
ProcessTable read_process_table();
