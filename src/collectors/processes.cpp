#include "collectors/processes.h"

#include "driver/base/command.h"
#include "driver/base/dates.h"
#include "driver/base/progress.h"
#include "zxml/place.h"

namespace {

// A machine that starts processes faster than they can be listed is taken as it was seen last.
constexpr int kMostReadings = 5;

// No kernel hands a program more than some megabytes of arguments.
// And a process whose arguments the kernel withholds makes ps hang, but only for itself.
constexpr SeriesLimits kLineLimits = {4u << 20, 256u << 20, UINT32_MAX, 3};

std::optional<ProcessLine> ask_ps(CommandSeries& lines, int32_t pid) {
  // Empty headers suppress the heading line.
  const Text command = format_string("ps -p%d -o user=\"\" -o command=\"\"", static_cast<int>(pid));
  uint32_t length = 0;
  const Text output = lines.run(command.get(), &length);
  return parse_process_line({output.get(), length});
}

void write_process(Place& process, const ProcessRecord& record, const ProcessLine& line) {
  process.set_value(text_value(record.name.c_str()));
  process.set_attribute("pid", Value(int64_t{record.pid}));
  process.set_attribute("ppid", Value(int64_t{record.ppid}));
  process.set_attribute("user", text_value(line.user.get()));
  process.set_attribute("cmd-line", text_value(line.command_line.get()));
}

void write_processes(InventoryTree& profiler, CommandSeries& lines,
                     const std::vector<ProcessRecord>& records) {
  Place processes(profiler.root(), "/Processes");
  size_t position = 0;
  for (const ProcessRecord& record : records) {
    announce("Processes", ++position, records.size());
    if (record.pid == 0) continue;
    const std::optional<ProcessLine> line = ask_ps(lines, record.pid);
    if (!line) continue;
    Place process(processes, "process:" + std::to_string(position), Place::Names::distinct);
    write_process(process, record, *line);
  }
}

}  // namespace

std::optional<ProcessLine> parse_process_line(std::string_view output) {
  const std::string_view line = output.substr(0, output.find('\n'));
  const size_t user_end = line.find(' ');
  const size_t command_start = line.find_first_not_of(' ', user_end);
  if (user_end == line.npos || command_start == line.npos) return std::nullopt;
  return ProcessLine{copy_range(line.data(), line.data() + user_end),
                     copy_range(line.data() + command_start, line.data() + line.size())};
}

void collect_processes(InventoryTree& profiler, const ProcessTableReader& read_table) {
  profiler.set_attribute("/SystemProcess/_timeStamp", text_value(format_now(DateForm::process).get()));
  CommandSeries lines(500, kLineLimits, "ps -pN -o user=\"\" -o command=\"\"");
  ProcessTableStatus status = ProcessTableStatus::grew;
  for (int reading = 0; status == ProcessTableStatus::grew && reading < kMostReadings; ++reading) {
    const ProcessTable table = read_table();
    status = table.status;
    write_processes(profiler, lines, table.records);
  }
}

void copy_processes(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* processes = profiler.top().find_child("Processes");
  if (processes) snapshot.top().add_child(std::make_unique<Tag>(*processes));
}
