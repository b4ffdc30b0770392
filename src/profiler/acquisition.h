// Stage I: the system profiler is run once per data type, and its outputs are spliced into one property-list
// document, as if it had been run once over all of them.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "driver/base/command.h"
#include "driver/base/text.h"

// What one run of the profiler prints is usually in this frame: an array of one dictionary. Trimming goes by
// the frame's lengths, not by searching for tags.
constexpr char kPrologue[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<array>\n";
constexpr char kEpilogue[] = "</array>\n</plist>\n";
constexpr size_t kPrologueLength = sizeof kPrologue - 1;
constexpr size_t kEpilogueLength = sizeof kEpilogue - 1;
static_assert(kPrologueLength == 172 && kEpilogueLength == 18, "the lengths that the tool's own frame has");

struct ProfilerOutput {
  const char* data_type;
  Text text;  // null where the profiler could not be started
  uint32_t length;
};

struct ProfilerDocument {
  Text text;
  size_t length;
  // The untouched outputs, one per data type in their order, in case the document cannot be parsed.
  std::vector<ProfilerOutput> outputs;
};

// Where in the document an output goes: the first one brings the prologue, the last one the closing tags.
enum class Cut { middle = 0, first = 1, last = 2 };

// Waits between two attempts; tests substitute something quicker.
using Pause = std::function<void(std::chrono::milliseconds)>;
void pause_for(std::chrono::milliseconds time);

// Runs the profiler over all its data types, within limits that tests lower. With `progress` it prints "10%"
// to "100%" along the way, for a program that waits for the scan.
//
// A data type without output is tried again, after 10 ms and then pauses that double up to a second, until
// the pauses of the whole run add up to 10 s; after that there are single attempts. If it stays empty, a line
// on standard error names its command. One that was given up for staying silent is not tried again.
ProfilerDocument collect_profiler_document(bool progress, const SeriesLimits& limits = SeriesLimits(),
                                           const Pause& pause = pause_for);

// The profiler's output over its own choice of data types, uncut; tried again in the same way.
ProfilerOutput run_full_profiler(const SeriesLimits& limits = SeriesLimits(), const Pause& pause = pause_for);

// One further data type, which is never part of the document. One that stays empty is tried once more: a
// system that does not know it would never answer.
ProfilerOutput run_profiler(CommandSeries& profiler, const char* data_type, const Pause& pause = pause_for);

// The command line that asks for a data type; null asks for the profiler's own choice.
Text profiler_command(const char* data_type);
// The size of the first buffer for what it prints, in bytes.
constexpr uint32_t kProfilerChunk = 65536;

// The document of such outputs, given in the order of the data types.
Text splice_outputs(const std::vector<ProfilerOutput>& outputs, size_t* length);

// The part of an output that belongs in the document; empty when the output is too short; it ends at the
// first NUL.
std::string_view cut_output(const char* output, uint32_t length, Cut cut);
