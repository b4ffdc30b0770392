#include "extended/sources.h"

#include <cstring>
#include <iterator>

#include "driver/base/command.h"
#include "driver/base/progress.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"

namespace {

struct AdditionalType {
  const char* name;
  const char* title;  // for the operator
};

constexpr AdditionalType kTypes[] = {
    {"SPStorageDataType", "Storage"},
    {"SPNVMeDataType", "NVMe"},
    {"SPUSBHostDataType", "USB"},
    {"SPThunderboltDataType", "Thunderbolt"},
    {"SPInstallHistoryDataType", "Installations"},
    {"SPiBridgeDataType", "Controller"},
};

struct Tool {
  const char* command_line;
  const char* title;
  Text ToolOutputs::*output;
};

// Some tools answer on standard error, and all print their errors there.
constexpr Tool kTools[] = {
    {"sw_vers 2>&1", "System version", &ToolOutputs::sw_vers},
    {"sysctl hw machdep.cpu kern.hv_vmm_present 2>&1", "Processor", &ToolOutputs::sysctl},
    {"fdesetup status 2>&1", "FileVault", &ToolOutputs::fdesetup},
    {"csrutil status 2>&1", "System Integrity Protection", &ToolOutputs::csrutil},
    {"spctl --status 2>&1", "Gatekeeper", &ToolOutputs::spctl},
    {"profiles status -type enrollment 2>&1", "Enrollment", &ToolOutputs::profiles},
    {"ls -d /Library/Apple/usr/libexec/oah/libRosettaRuntime 2>&1", "Rosetta", &ToolOutputs::rosetta},
};

constexpr size_t kCount = std::size(kTypes) + std::size(kTools);

// The longest answer, that of sysctl, is a few kilobytes.
constexpr uint32_t kToolChunk = 4096;
constexpr uint32_t kLongestAnswer = 1u << 20;

std::string labelled(const char* command_line, const char* bytes, size_t length) {
  return std::string(command_line).append("\n").append(bytes, length);
}

}  // namespace

Sources fetch_sources(const SeriesLimits& limits, const Pause& pause) {
  Sources sources;
  size_t number = 0;
  CommandSeries profiler(kProfilerChunk, limits);
  for (const AdditionalType& type : kTypes) {
    announce(type.title, ++number, kCount);
    sources.types.push_back(run_profiler(profiler, type.name, pause));
  }
  for (const Tool& tool : kTools) {
    announce(tool.title, ++number, kCount);
    uint32_t length = 0;
    sources.tools.*tool.output = run_if_there(tool.command_line, &length, kToolChunk, kLongestAnswer);
  }
  return sources;
}

std::unique_ptr<InventoryTree> read_additional_types(int32_t byte_order_flag,
                                                     const std::vector<ProfilerOutput>& types) {
  auto tree = std::make_unique<InventoryTree>(byte_order_flag, "Additional");
  for (const ProfilerOutput& output : types) {
    const CFRef<CFArrayRef> list = parse_profiler_output(output);
    if (list) dump_profiler(list.get(), *tree);
  }
  return tree;
}

std::vector<std::string> labelled_outputs(const Sources& sources) {
  std::vector<std::string> outputs;
  for (const ProfilerOutput& type : sources.types) {
    if (type.length == 0) continue;
    outputs.push_back(labelled(profiler_command(type.data_type).get(), type.text.get(), type.length));
  }
  for (const Tool& tool : kTools) {
    const char* text = (sources.tools.*tool.output).get();
    if (text && *text) outputs.push_back(labelled(tool.command_line, text, std::strlen(text)));
  }
  return outputs;
}
