#include "collectors/platform_uuid.h"

#include "driver/base/command.h"
#include "driver/base/progress.h"

namespace {

// The line reads  "IOPlatformUUID" = "00000000-..."  and so the UUID is its fourth piece between quotes.
constexpr char kCommand[] =
    "ioreg -rd1 -c IOPlatformExpertDevice | "
    "awk '/IOPlatformUUID/ { split($0, line, \"\\\"\"); printf(\"%s\", line[4]); }'";

}  // namespace

Text query_platform_uuid() {
  constexpr uint32_t kLongest = 1u << 16;
  announce("Computer");
  const WorkLimit limit(2);
  uint32_t length = 0;
  return run_command(kCommand, &length, 40, kLongest);
}
