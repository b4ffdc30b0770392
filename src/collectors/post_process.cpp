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

using Step = void (*)(InventoryTree& snapshot, InventoryTree& profiler, const Omissions& omitted);

template <void (*collect)(InventoryTree& snapshot, InventoryTree& profiler)>
void always(InventoryTree& snapshot, InventoryTree& profiler, const Omissions&) {
  collect(snapshot, profiler);
}

void collect_accounts(InventoryTree& snapshot, InventoryTree&, const Omissions& omitted) {
  if (!omitted.accounts) collect_user_accounts(snapshot);
}

void collect_own_environment(InventoryTree& snapshot, InventoryTree&, const Omissions& omitted) {
  if (omitted.environment) return;
  omitted.values ? collect_environment_names(snapshot) : collect_environment(snapshot);
}

// The order matters to the console: later steps may overwrite earlier values. A step's place is the number
// printed for it.
constexpr Step kSteps[] = {
    always<collect_system>,   always<collect_processors>,   always<collect_memory>,
    always<collect_displays>, always<collect_storage>,      always<collect_network_adapters>,
    always<collect_printers>, always<collect_usb>,          always<collect_os>,
    collect_accounts,         always<collect_applications>, always<copy_processes>,
    collect_own_environment,  always<collect_firewall>,
};

}  // namespace

void post_process(InventoryTree& snapshot, InventoryTree& profiler, bool verbose, const Omissions& omitted) {
  if (verbose) print_now("IV. PostProcess>>>\n");
  int number = 0;
  for (const Step collect : kSteps) {
    if (verbose) print_now("%d...", ++number);
    collect(snapshot, profiler, omitted);
    if (verbose) print_now("done\n");
  }
  if (verbose) print_now("IV. PostProcess End.\n");
}
