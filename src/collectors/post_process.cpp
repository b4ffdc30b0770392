#include "collectors/post_process.h"

#include "collectors/applications.h"
#include "collectors/computer_system.h"
#include "collectors/displays.h"
#include "collectors/environment.h"
#include "collectors/firewall.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/operating_system.h"
#include "collectors/printers.h"
#include "collectors/processes.h"
#include "collectors/processors.h"
#include "collectors/storage.h"
#include "collectors/usb.h"
#include "collectors/users.h"
#include "driver/base/console.h"

namespace {

using Collector = void (*)(InventoryTree& snapshot, InventoryTree& profiler);

void collect_accounts(InventoryTree& snapshot, InventoryTree&) { collect_user_accounts(snapshot); }
void collect_own_environment(InventoryTree& snapshot, InventoryTree&) { collect_environment(snapshot); }

// The order matters to the console: later steps may overwrite earlier values. A step's place is the number
// printed for it.
constexpr Collector kSteps[] = {
    collect_system,          collect_processors,   collect_memory,
    collect_displays,        collect_storage,      collect_network_adapters,
    collect_printers,        collect_usb,          collect_os,
    collect_accounts,        collect_applications, copy_processes,
    collect_own_environment, collect_firewall,
};

}  // namespace

void post_process(InventoryTree& snapshot, InventoryTree& profiler, bool verbose) {
  if (verbose) print_now("IV. PostProcess>>>\n");
  int number = 0;
  for (const Collector collect : kSteps) {
    if (verbose) print_now("%d...", ++number);
    collect(snapshot, profiler);
    if (verbose) print_now("done\n");
  }
  if (verbose) print_now("IV. PostProcess End.\n");
}
