// The line that ps prints for one process.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "collectors/processes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::optional<ProcessLine> line = parse_process_line({reinterpret_cast<const char*>(bytes), size});
  if (!line) return 0;
  if (std::strchr(line->user.get(), ' ') || std::strchr(line->command_line.get(), '\n')) std::abort();
  return 0;
}
