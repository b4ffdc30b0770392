#include "driver/scan_driver.h"

#include <CoreFoundation/CoreFoundation.h>
#include <SystemConfiguration/SystemConfiguration.h>

#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "collectors/network_identity.h"
#include "collectors/post_process.h"
#include "collectors/processes.h"
#include "collectors/system_summary.h"
#include "driver/asset_facts.h"
#include "driver/base/console.h"
#include "driver/base/dates.h"
#include "driver/base/run_journal.h"
#include "driver/base/version.h"
#include "driver/output_file.h"
#include "extended/extended.h"
#include "extended/scan_record.h"
#include "extended/sources.h"
#include "platform/cf_ref.h"
#include "profiler/acquisition.h"
#include "profiler/plist_access.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"
#include "zxml/INVfile.h"
#include "zxml/asset_info.h"

namespace {

// The run's log, on standard output when the operator asked for it.
class Log {
 public:
  explicit Log(bool enabled) : enabled_(enabled) {}
  void operator()(const char* text) const {
    if (enabled_) print_now("%s", text);
  }

 private:
  bool enabled_;
};

Text computer_name() {
  const CFRef<CFStringRef> name(SCDynamicStoreCopyComputerName(nullptr, nullptr));
  return name ? cfstring_to_text(name.get()) : copy_text("");
}

void save_and_report(const INVfile& container, OutputFile& file, bool silent) {
  if (!file.save([&container](const char* path) { return container.save(path, HeaderForm::compressed); })) {
    std::fprintf(stderr, "Cannot create file :%s\n", file.path().c_str());
  } else if (silent) {
    print_now(">>>%s\n", file.name().c_str());
  } else {
    print_now("\nScan finished. Results saved to file \"%s\"\n", file.path().c_str());
  }
}

void set_snapshot_attributes(InventoryTree& snapshot, const char* timestamp, int64_t scan_seconds,
                             const NetworkIdentity& identity, const SystemSummary& summary) {
  snapshot.set_attribute("/timestamp", text_value(timestamp));
  snapshot.set_attribute("/scan-time", Value(scan_seconds * 1000));
  snapshot.set_attribute("/client-version", text_value(kClientVersion));
  snapshot.set_attribute("/scan-subtype", text_value("sstService"));
  snapshot.set_attribute("/snaptype", text_value("mac:1"));
  snapshot.set_attribute("/hostname", text_value(identity.netbios_name.get()));
  snapshot.set_attribute("/domain", text_value(identity.workgroup.get()));
  snapshot.set_attribute("/user-name", text_value(summary.user_name.get()));
  snapshot.set_attribute("/ip-address", text_value(identity.ip_address.get()));
}

// The name in the file's name: the one in the Windows network, if the machine has one.
const char* machine_name(const NetworkIdentity& identity, const Text& computer) {
  return identity.netbios_name ? identity.netbios_name.get() : computer.get();
}

// What only the extended scan does. Its commands run after those of the default scan; it writes once the
// short tree is built, which is the same whether a scan was extended or not.
class Extension {
 public:
  Extension(int32_t byte_order_flag, const char* options, const Omissions& omitted)
      : byte_order_flag_(byte_order_flag), options_(options), omitted_(omitted) {}

  void fetch() { sources_ = fetch_sources(); }
  void write(InventoryTree& snapshot, InventoryTree& profiler) const {
    const auto additional = read_additional_types(byte_order_flag_, sources_.types);
    collect_extended(snapshot, {profiler, *additional, sources_.tools, !omitted_.people});
    collect_scan_record(snapshot, options_, journal_.commands(), omitted_);
  }

 private:
  int32_t byte_order_flag_;
  const char* options_;
  const Omissions& omitted_;
  RunJournal journal_;
  Sources sources_;
};

void run_scan(const ScanContext& context, bool silent, const char* ip, const char* login,
              const char* extended, const Omissions& omitted) {
  std::optional<Extension> extension;
  if (extended) extension.emplace(context.byte_order_flag, extended, omitted);
  const Log log(context.log_enabled != 0);
  const std::time_t start = std::time(nullptr);
  log("------Start Log------\n");
  log("I. Collecting Data....");
  ProfilerDocument document = collect_profiler_document(silent);
  log("done\n");

  CFRef<CFArrayRef> list = parse_profiler_document(document);
  document = ProfilerDocument();
  const SystemSummary summary = query_system_summary(list.get());
  auto raw = std::make_unique<InventoryTree>(context.byte_order_flag, "Macintosh");
  log("II. Parsing Data....");
  dump_profiler(list.get(), *raw);
  log("done\n");

  log("III. Get Data For AssetInfo....");
  const NetworkIdentity identity = query_network_identity(list.get(), ip);
  log("33% ");
  const Text serial_number = find_hardware_serial(list.get());
  list = CFRef<CFArrayRef>();
  log("66% ");
  collect_processes(*raw, omitted);
  log("100% done\n");

  auto snapshot = std::make_unique<InventoryTree>(context.byte_order_flag, "Snapshot");
  post_process(*snapshot, *raw, context.log_enabled != 0, omitted);
  if (extension) extension->fetch();
  const std::time_t end = std::time(nullptr);
  const Text computer = computer_name();
  const Text timestamp = format_now(DateForm::cim);
  set_snapshot_attributes(*snapshot, timestamp.get(), end - start, identity, summary);

  log("V. Creating AssetInfo Section....");
  auto asset_info =
      build_asset_info({context.byte_order_flag, *snapshot, timestamp.get(), asset_summary(summary),
                        asset_network(identity), computer.get(), serial_number.get(), login});
  log("done\n");
  if (extension) extension->write(*snapshot, *raw);
  raw.reset();

  INVfile container(context.byte_order_flag);
  container.add_section(std::move(snapshot), kSnapshot, Layout::whole_compressed);
  container.add_section(std::move(asset_info), kAssetInfo, Layout::whole_compressed);

  log("VI. Generating File name....");
  OutputFile file(machine_name(identity, computer), identity.hardware_address.get());
  log("done\n");
  log("VII. Saving to file....");
  save_and_report(container, file, silent);
  log("done\n");
  log("------End Log------\n");
}

void add_outputs(INVfile& container, const std::vector<std::string>& outputs) {
  for (const std::string& output : outputs) add_raw_output(container, output.data(), output.size());
}

// What support needs from a machine whose scans go wrong: the profiler's own bytes.
void run_debug_scan(const ScanContext& context, bool silent, const char* ip, bool extended) {
  const ProfilerOutput output = run_full_profiler();
  const NetworkIdentity identity = query_network_identity(parse_profiler_output(output).get(), ip);
  INVfile container(context.byte_order_flag);
  const Text computer = computer_name();
  build_debug_asset_info(container, machine_name(identity, computer), asset_network(identity),
                         output.text.get(), output.length);
  if (extended) add_outputs(container, labelled_outputs(fetch_sources()));
  OutputFile file(machine_name(identity, computer), identity.hardware_address.get());
  save_and_report(container, file, silent);
}

}  // namespace

void ScanDriver(const ScanContext& context, bool silent, bool debug, const char* ip, const char* login,
                const char* extended, const Omissions& omitted) {
  if (context.suspended != 0) return;
  if (debug) {
    run_debug_scan(context, silent, ip, extended != nullptr);
  } else {
    run_scan(context, silent, ip, login, extended, omitted);
  }
}
