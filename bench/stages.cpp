// One scan, stage by stage, in the order of src/driver/scan_driver.cpp: prints a line "stage, nanoseconds of
// processor time, allocations, bytes allocated" per stage, separated by tabs. To be started with
// simulator/run; the file is saved in the working directory.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>

#include "collectors/applications.h"
#include "collectors/computer_system.h"
#include "collectors/displays.h"
#include "collectors/environment.h"
#include "collectors/firewall.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/network_identity.h"
#include "collectors/operating_system.h"
#include "collectors/printers.h"
#include "collectors/processes.h"
#include "collectors/processors.h"
#include "collectors/storage.h"
#include "collectors/system_summary.h"
#include "collectors/usb.h"
#include "collectors/users.h"
#include "driver/asset_facts.h"
#include "driver/base/dates.h"
#include "driver/output_file.h"
#include "platform/heap.h"
#include "profiler/acquisition.h"
#include "profiler/plist_access.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"
#include "zxml/INVfile.h"
#include "zxml/asset_info.h"
#include "zxml/deflate.h"

namespace {

long long allocations = 0;
long long allocated_bytes = 0;

}  // namespace

// Every allocation of the program and its libraries, including operator new, goes through here.
extern "C" void* __libc_malloc(size_t size);
extern "C" void* malloc(size_t size) {
  ++allocations;
  allocated_bytes += static_cast<long long>(size);
  return __libc_malloc(size);
}

namespace {

long long processor_time() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

// What was used since the last mark.
class Stages {
 public:
  void mark(const char* name) {
    const long long now = processor_time();
    std::printf("%s\t%lld\t%lld\t%lld\n", name, now - time_, allocations - allocations_,
                allocated_bytes - bytes_);
    allocations_ = allocations;
    bytes_ = allocated_bytes;
    time_ = processor_time();
  }

 private:
  long long time_ = processor_time();
  long long allocations_ = allocations;
  long long bytes_ = allocated_bytes;
};

void collect_accounts(InventoryTree& snapshot, InventoryTree&) { collect_user_accounts(snapshot); }
void collect_own_environment(InventoryTree& snapshot, InventoryTree&) { collect_environment(snapshot); }

constexpr struct {
  const char* name;
  void (*collect)(InventoryTree& snapshot, InventoryTree& profiler);
} kSteps[] = {
    {"1 computer system", collect_system},
    {"2 processors", collect_processors},
    {"3 memory", collect_memory},
    {"4 displays", collect_displays},
    {"5 storage", collect_storage},
    {"6 network adapters", collect_network_adapters},
    {"7 printers", collect_printers},
    {"8 USB", collect_usb},
    {"9 operating system", collect_os},
    {"10 user accounts", collect_accounts},
    {"11 applications", collect_applications},
    {"12 processes", copy_processes},
    {"13 environment", collect_own_environment},
    {"14 firewall", collect_firewall},
};

void scan() {
  Stages stages;
  ProfilerDocument document = collect_profiler_document(false);
  stages.mark("acquire and splice");
  size_t document_length = 0;
  splice_outputs(document.outputs, &document_length);
  stages.mark("splice alone, once more");
  CFRef<CFArrayRef> list = parse_profiler_document(document);
  document = ProfilerDocument();
  stages.mark("parse");
  const SystemSummary summary = query_system_summary(list.get());
  stages.mark("summary");
  auto raw = std::make_unique<InventoryTree>(1, "Macintosh");
  dump_profiler(list.get(), *raw);
  stages.mark("dump");
  const NetworkIdentity identity = query_network_identity(list.get(), nullptr);
  const Text serial_number = find_hardware_serial(list.get());
  list = CFRef<CFArrayRef>();
  stages.mark("identity, release of the list");
  collect_processes(*raw);
  stages.mark("process list");
  auto snapshot = std::make_unique<InventoryTree>(1, "Snapshot");
  for (const auto& step : kSteps) {
    step.collect(*snapshot, *raw);
    stages.mark(step.name);
  }
  raw.reset();
  stages.mark("release of the raw tree");
  const Text timestamp = format_now(DateForm::cim);
  auto asset_info = build_asset_info({1, *snapshot, timestamp.get(), asset_summary(summary),
                                      asset_network(identity), "", serial_number.get(), nullptr});
  stages.mark("asset info");
  Text text(new char[snapshot->root().text_size() + 1]);
  const size_t length = snapshot->root().write_text(text.get(), 0);
  stages.mark("text");
  Bytes compressed = deflate_buffer(text.get(), length, "bench");
  stages.mark("deflate");
  {
    INVfile container(1);
    container.frees_borrowed_data = true;
    const size_t compressed_length = compressed.length();
    container.add_raw_section(compressed.release(), compressed_length);
    OutputFile("stages", "").save([&](const char* path) {
      return container.save(path, HeaderForm::compressed);
    });
  }
  stages.mark("save");
  text.reset();
  snapshot.reset();
  stages.mark("release of the snapshot");
}

}  // namespace

int main() {
  prepare_heap();
  scan();
  return 0;
}
