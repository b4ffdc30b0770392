#include "collectors/processes.h"

#include "driver/base/command.h"
#include "driver/base/dates.h"
#include "driver/base/progress.h"
#include "zxml/place.h"

namespace {

// If a machine starts processes faster than they can be listed, the last listing counts.
constexpr int kMostReadings = 5;

// No kernel hands a program more than some megabytes of arguments.
// And a process whose arguments the kernel withholds makes ps hang, but only for itself.
constexpr SeriesLimits kLineLimits = {4u << 20, 256u << 20, UINT32_MAX, 3};

// The columns that ps prints for each process. Empty headers suppress the heading line.
struct Question {
  const char* columns;
  const char* series;
  std::optional<ProcessLine> (*parse)(std::string_view output);
};

constexpr Question kUserAndCommand = {" -o user=\"\" -o command=\"\"", "ps -pN -o user=\"\" -o command=\"\"",
                                      parse_process_line};
constexpr Question kUser = {" -o user=\"\"", "ps -pN -o user=\"\"", parse_user_line};

class Ps {
 public:
  explicit Ps(const Question& question) : question_(question), lines_(500, kLineLimits, question.series) {}

  std::optional<ProcessLine> ask(int32_t pid) {
    const std::string command = "ps -p" + std::to_string(pid) + question_.columns;
    uint32_t length = 0;
    const Text output = lines_.run(command.c_str(), &length);
    return question_.parse({output.get(), length});
  }

 private:
  const Question& question_;
  CommandSeries lines_;
};

void write_process(Place& process, const ProcessRecord& record, const ProcessLine& line) {
  process.set_value(text_value(record.name.c_str()));
  process.set_attribute("pid", Value(int64_t{record.pid}));
  process.set_attribute("ppid", Value(int64_t{record.ppid}));
  process.set_attribute("user", text_value(line.user.get()));
  if (line.command_line) process.set_attribute("cmd-line", text_value(line.command_line.get()));
}

void write_processes(InventoryTree& profiler, Ps& ps, const std::vector<ProcessRecord>& records) {
  Place processes(profiler.root(), "/Processes");
  size_t position = 0;
  for (const ProcessRecord& record : records) {
    announce("Processes", ++position, records.size());
    if (record.pid == 0) continue;
    const std::optional<ProcessLine> line = ps.ask(record.pid);
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

std::optional<ProcessLine> parse_user_line(std::string_view output) {
  const std::string_view line = output.substr(0, output.find('\n'));
  const std::string_view user = line.substr(0, line.find(' '));
  if (user.empty()) return std::nullopt;
  return ProcessLine{copy_range(user.data(), user.data() + user.size()), nullptr};
}

void collect_processes(InventoryTree& profiler, const Omissions& omitted,
                       const ProcessTableReader& read_table) {
  profiler.set_attribute("/SystemProcess/_timeStamp", text_value(format_now(DateForm::process).get()));
  if (omitted.processes) return;
  Ps ps(omitted.arguments ? kUser : kUserAndCommand);
  ProcessTableStatus status = ProcessTableStatus::grew;
  for (int reading = 0; status == ProcessTableStatus::grew && reading < kMostReadings; ++reading) {
    const ProcessTable table = read_table();
    status = table.status;
    write_processes(profiler, ps, table.records);
  }
}

void copy_processes(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* processes = profiler.top().find_child("Processes");
  if (processes) snapshot.top().add_child(std::make_unique<Tag>(*processes));
}
