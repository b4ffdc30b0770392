#include "profiler/acquisition.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <thread>

#include "driver/base/console.h"

namespace {

constexpr uint32_t kChunk = 65536;
constexpr int kMaximumRetries = 20;
constexpr std::chrono::milliseconds kFirstPause(10);
constexpr std::chrono::milliseconds kLongestPause(1000);

// The data types of a scan, in the order of the document, and the progress that is told once each has run (0:
// nothing).
struct DataType {
  const char* name;
  int percent;
};

constexpr DataType kDataTypes[] = {
    {"SPHardwareDataType", 0},       {"SPNetworkDataType", 10},
    {"SPSoftwareDataType", 0},       {"SPParallelATADataType", 20},
    {"SPAudioDataType", 0},          {"SPBluetoothDataType", 30},
    {"SPFireWireDataType", 0},       {"SPDisplaysDataType", 40},
    {"SPMemoryDataType", 0},         {"SPPrintersDataType", 50},
    {"SPSerialATADataType", 0},      {"SPParallelSCSIDataType", 0},
    {"SPUSBDataType", 60},           {"SPAirPortDataType", 0},
    {"SPFirewallDataType", 70},      {"SPNetworkLocationDataType", 0},
    {"SPNetworkVolumeDataType", 80}, {"SPApplicationsDataType", 0},
    {"SPStartupItemDataType", 90},   {"SPDiscBurningDataType", 0},
    {"SPPowerDataType", 100},
};

// Runs the profiler; one that stays silent once is not waited for again.
class Profiler {
 public:
  explicit Profiler(const SeriesLimits& limits) : commands_(kChunk, limits) {}

  ProfilerOutput run(const char* data_type);

 private:
  CommandSeries commands_;
  int retries_ = kMaximumRetries;
};

ProfilerOutput Profiler::run(const char* data_type) {
  const Text command = data_type ? format_string("system_profiler -detailLevel full -xml %s", data_type)
                                 : format_string("system_profiler -detailLevel full -xml");
  ProfilerOutput output = {data_type, nullptr, 0};
  auto pause = kFirstPause;
  for (int retries_left = retries_;; --retries_left) {
    output.text = commands_.run(command.get(), &output.length);
    if (output.length > 0 || retries_left == 0 || commands_.used_up()) break;
    std::this_thread::sleep_for(pause);
    pause = std::min(2 * pause, kLongestPause);
  }
  if (output.length == 0 && !commands_.used_up()) {
    std::fprintf(stderr, "No output: %s\n", command.get());
    retries_ = 0;
  }
  return output;
}

Cut cut_at(size_t index) {
  if (index == 0) return Cut::kFirst;
  return index + 1 == std::size(kDataTypes) ? Cut::kLast : Cut::kMiddle;
}

}  // namespace

std::string_view cut_output(const char* output, uint32_t length, Cut cut) {
  const size_t from = cut == Cut::kFirst ? 0 : kPrologueLength;
  // Of the last output only the line feed at its end is dropped, since the document ends with it.
  const size_t dropped = cut == Cut::kLast ? 1 : kEpilogueLength;
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
    if (piece.empty() && cut == Cut::kFirst) piece = kPrologue;
    if (piece.empty() && cut == Cut::kLast) piece = kEpilogue;
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

ProfilerDocument collect_profiler_document(bool progress, const SeriesLimits& limits) {
  ProfilerDocument document;
  Profiler profiler(limits);
  for (const DataType& data_type : kDataTypes) {
    document.outputs.push_back(profiler.run(data_type.name));
    if (progress && data_type.percent > 0) print_now("%d%%\n", data_type.percent);
  }
  document.text = splice_outputs(document.outputs, &document.length);
  return document;
}

ProfilerOutput run_full_profiler(const SeriesLimits& limits) { return Profiler(limits).run(nullptr); }
