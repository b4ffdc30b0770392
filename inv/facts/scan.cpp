#include "inv/facts/scan.h"

#include "inv/base/sha256.h"
#include "inv/base/utf8.h"
#include "inv/file/machine.h"

namespace inv {

Scan scan_of(const Inventory& inventory) {
  return {hexadecimal(sha256(inventory.bytes)),
          to_utf8(machine_identity(inventory)),
          to_utf8(machine_name(inventory)),
          to_utf8(inventory.file_name),
          to_utf8(scan_timestamp(inventory)),
          scan_time(inventory),
          !inventory.faults.empty()};
}

}  // namespace inv
