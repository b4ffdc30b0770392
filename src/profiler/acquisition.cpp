#include "profiler/acquisition.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <thread>

#include "driver/base/console.h"
#include "driver/base/progress.h"
#include "profiler/data_types.h"

namespace {

constexpr std::chrono::milliseconds kFirstPause(10);
constexpr std::chrono::milliseconds kLongestPause(1000);
constexpr std::chrono::milliseconds kAllPauses(10000);

// Runs the profiler; the pauses of all runs together are limited.
class Profiler {
 public:
  Profiler(const SeriesLimits& limits, const Pause& pause)
      : commands_(kProfilerChunk, limits), pause_(pause) {}

  ProfilerOutput run(const char* data_type);

 private:
  Text run_again_and_again(const char* command, uint32_t* length);
  bool may_answer() const { return !commands_.used_up() && !commands_.gave_up(); }

  CommandSeries commands_;
  const Pause& pause_;
  std::chrono::milliseconds pauses_left_ = kAllPauses;
};

ProfilerOutput Profiler::run(const char* data_type) {
  const Text command = profiler_command(data_type);
  ProfilerOutput output = {data_type, nullptr, 0};
  output.text = run_again_and_again(command.get(), &output.length);
  if (output.length == 0 && may_answer()) std::fprintf(stderr, "No output: %s\n", command.get());
  return output;
}

Text Profiler::run_again_and_again(const char* command, uint32_t* length) {
  for (auto pause = kFirstPause;; pause = std::min(2 * pause, kLongestPause)) {
    Text output = commands_.run(command, length);
    if (*length > 0 || pause > pauses_left_ || !may_answer()) return output;
    pause_(pause);
    pauses_left_ -= pause;
  }
}

Cut cut_at(size_t index) {
  if (index == 0) return Cut::first;
  return index + 1 == std::size(kDataTypes) ? Cut::last : Cut::middle;
}

}  // namespace

std::string_view cut_output(const char* output, uint32_t length, Cut cut) {
  const size_t from = cut == Cut::first ? 0 : kPrologueLength;
  // The document ends with the last output, which only loses its final line feed.
  const size_t dropped = cut == Cut::last ? 1 : kEpilogueLength;
  if (length < from + dropped) return {};
  const std::string_view piece(output + from, length - from - dropped);
  return piece.substr(0, piece.find('\0'));
}

Text splice_outputs(const std::vector<ProfilerOutput>& outputs, size_t* length) {
  std::vector<std::string_view> pieces;
  size_t total = 0;
  for (size_t i = 0; i < outputs.size(); ++i) {
    const Cut cut = cut_at(i);
    std::string_view piece = cut_output(outputs[i].text.get(), outputs[i].length, cut);
    if (piece.empty() && cut == Cut::first) piece = kPrologue;
    if (piece.empty() && cut == Cut::last) piece = kEpilogue;
    pieces.push_back(piece);
    total += piece.size();
  }
  Text document(new char[total + 1]);
  char* end = document.get();
  for (const std::string_view piece : pieces) end = std::copy(piece.begin(), piece.end(), end);
  *end = '\0';
  *length = total;
  return document;
}

Text profiler_command(const char* data_type) {
  return data_type ? format_string("system_profiler -detailLevel full -xml %s", data_type)
                   : format_string("system_profiler -detailLevel full -xml");
}

ProfilerOutput run_profiler(CommandSeries& profiler, const char* data_type, const Pause& pause) {
  const Text command = profiler_command(data_type);
  ProfilerOutput output = {data_type, nullptr, 0};
  output.text = profiler.run(command.get(), &output.length);
  if (output.length > 0 || profiler.used_up() || profiler.gave_up()) return output;
  pause(kFirstPause);
  output.text = profiler.run(command.get(), &output.length);
  return output;
}

void pause_for(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

ProfilerDocument collect_profiler_document(bool progress, const SeriesLimits& limits, const Pause& pause) {
  ProfilerDocument document;
  Profiler profiler(limits, pause);
  for (const DataType& data_type : kDataTypes) {
    announce(data_type.title, document.outputs.size() + 1, std::size(kDataTypes));
    document.outputs.push_back(profiler.run(data_type.name));
    if (progress && data_type.percent > 0) print_now("%d%%\n", data_type.percent);
  }
  document.text = splice_outputs(document.outputs, &document.length);
  return document;
}

ProfilerOutput run_full_profiler(const SeriesLimits& limits, const Pause& pause) {
  announce("System profiler");
  return Profiler(limits, pause).run(nullptr);
}
