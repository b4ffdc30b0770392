// The main functions separately, on machines with 50 to 20,000 applications, made in memory.
#include <CoreFoundation/CoreFoundation.h>
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "collectors/applications.h"
#include "driver/base/text.h"
#include "platform/cf_ref.h"
#include "plist/nesting.h"
#include "plist/scanner.h"
#include "profiler/acquisition.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"
#include "zxml/deflate.h"

namespace {

constexpr char kApplication[] =
    "<dict>\n<key>_name</key>\n<string>Address Book %d</string>\n"
    "<key>has64BitIntelCode</key>\n<string>yes</string>\n"
    "<key>info</key>\n<string>5.%d, Copyright \u00A9 2000-2010</string>\n"
    "<key>lastModified</key>\n<date>20%02d-%02d-%02dT07:13:17Z</date>\n"
    "<key>path</key>\n<string>/Applications/Address Book %d.app</string>\n"
    "<key>runtime_environment</key>\n<string>arch_x86</string>\n"
    "<key>version</key>\n<string>5.%d</string>\n</dict>\n";

// What the profiler prints on a machine with this many applications.
ProfilerOutput make_output(int applications) {
  std::string list = std::string(kPrologue) +
                     "<dict>\n<key>_dataType</key>\n<string>SPApplicationsDataType</string>\n"
                     "<key>_items</key>\n<array>\n";
  for (int i = 0; i < applications; ++i)
    list += format_string(kApplication, i, i, i % 12, i / 28 % 12 + 1, i % 28 + 1, i, i).get();
  list += std::string("</array>\n</dict>\n") + kEpilogue;
  return {"SPApplicationsDataType", copy_text(list.c_str()), static_cast<uint32_t>(list.size())};
}

std::string_view text_of(const ProfilerOutput& output) { return {output.text.get(), output.length}; }

struct Ignore {
  void begin_array() {}
  void end_array() {}
  void begin_dictionary() {}
  void end_dictionary() {}
  void key(plist::Characters) {}
  void string(plist::Characters) {}
  void integer(plist::Integer, std::string_view) {}
  void real(double, std::string_view) {}
  void boolean(bool) {}
  void date(double, std::string_view) {}
  void data(std::string_view) {}
};

void count_bytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
  state.SetComplexityN(state.range(0));
}

int applications(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

void nested_too_deeply(benchmark::State& state) {
  const ProfilerOutput output = make_output(applications(state));
  for (auto _ : state) benchmark::DoNotOptimize(plist::nested_too_deeply(text_of(output)));
  count_bytes(state, output.length);
}

void scan(benchmark::State& state) {
  const ProfilerOutput output = make_output(applications(state));
  Ignore listener;
  const plist::Events events = plist::events_for(listener);
  for (auto _ : state) benchmark::DoNotOptimize(plist::scan(text_of(output), events));
  count_bytes(state, output.length);
}

void scan_leniently(benchmark::State& state) {
  const ProfilerOutput output = make_output(applications(state));
  Ignore listener;
  const plist::Events events = plist::events_for(listener);
  for (auto _ : state) plist::scan_leniently(text_of(output), events);
  count_bytes(state, output.length);
}

void parse_profiler_output(benchmark::State& state) {
  const ProfilerOutput output = make_output(applications(state));
  for (auto _ : state) benchmark::DoNotOptimize(::parse_profiler_output(output));
  count_bytes(state, output.length);
}

void dump_profiler(benchmark::State& state) {
  const ProfilerOutput output = make_output(applications(state));
  const CFRef<CFArrayRef> list = ::parse_profiler_output(output);
  for (auto _ : state) {
    InventoryTree raw(1, "Macintosh");
    ::dump_profiler(list.get(), raw);
  }
  count_bytes(state, output.length);
}

void collect_applications(benchmark::State& state) {
  const ProfilerOutput output = make_output(applications(state));
  InventoryTree raw(1, "Macintosh");
  ::dump_profiler(::parse_profiler_output(output).get(), raw);
  for (auto _ : state) {
    InventoryTree snapshot(1, "Snapshot");
    ::collect_applications(snapshot, raw);
  }
  state.SetComplexityN(state.range(0));
}

// A machine's text, without and with its compression.
void serialize(benchmark::State& state, Layout layout) {
  InventoryTree raw(1, "Macintosh"), snapshot(1, "Snapshot");
  ::dump_profiler(::parse_profiler_output(make_output(applications(state))).get(), raw);
  ::collect_applications(snapshot, raw);
  for (auto _ : state) benchmark::DoNotOptimize(snapshot.serialize(layout));
  count_bytes(state, snapshot.root().text_size());
}
void text(benchmark::State& state) { serialize(state, Layout::whole_plain); }
void text_and_deflate(benchmark::State& state) { serialize(state, Layout::whole_compressed); }

void sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int size : {50, 1000, 5000, 20000}) benchmark->Arg(size);
  benchmark->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

BENCHMARK(nested_too_deeply)->Apply(sizes);
BENCHMARK(scan)->Apply(sizes);
BENCHMARK(scan_leniently)->Apply(sizes);
BENCHMARK(parse_profiler_output)->Apply(sizes);
BENCHMARK(dump_profiler)->Apply(sizes);
BENCHMARK(collect_applications)->Apply(sizes);
BENCHMARK(text)->Apply(sizes);
BENCHMARK(text_and_deflate)->Apply(sizes);

}  // namespace
