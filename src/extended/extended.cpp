#include "extended/extended.h"

#include "extended/battery.h"
#include "extended/bluetooth.h"
#include "extended/disks.h"
#include "extended/displays.h"
#include "extended/network_details.h"
#include "extended/packages.h"
#include "extended/platform.h"
#include "extended/security_platform.h"
#include "extended/software_details.h"
#include "extended/storage_details.h"
#include "extended/thunderbolt.h"
#include "extended/usb_host.h"
#include "extended/volumes.h"

namespace {

using Collector = void (*)(InventoryTree& snapshot, const ExtendedInputs& inputs);

// The details of disks and partitions must be written before those lists are continued.
constexpr Collector kSteps[] = {
    collect_platform, collect_security_platform, collect_battery,         collect_storage_details,
    collect_disks,    collect_volumes,           collect_display_details, collect_network_details,
    collect_usb_host, collect_thunderbolt,       collect_bluetooth,       collect_software_details,
    collect_packages,
};

}  // namespace

void collect_extended(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  for (const Collector collect : kSteps) collect(snapshot, inputs);
}
