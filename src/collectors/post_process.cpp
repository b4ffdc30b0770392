#include "collectors/post_process.h"

#include "collectors/applications.h"
#include "collectors/environment.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/operating_system.h"
#include "collectors/processors.h"
#include "driver/console.h"

namespace {

using Collector = void (*)(InventoryTree& snapshot, InventoryTree& profiler);

void collect_nothing(InventoryTree&, InventoryTree&) {}
void copy_process_list(InventoryTree& snapshot, InventoryTree& profiler) {
  copy_processes(snapshot, profiler);
}
void collect_own_environment(InventoryTree& snapshot, InventoryTree&) { collect_environment(snapshot); }

// A collector's place in this table is the number that is told of it.
constexpr Collector kSteps[] = {
    collect_nothing,           // computer system
    collect_processors,        //
    collect_memory,            //
    collect_nothing,           // displays
    collect_nothing,           // storage
    collect_network_adapters,  //
    collect_nothing,           // printers
    collect_nothing,           // USB devices
    collect_os,                //
    collect_nothing,           // user accounts
    collect_applications,      //
    copy_process_list,         //
    collect_own_environment,   //
    collect_nothing,           // firewall
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
