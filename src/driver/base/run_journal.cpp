#include "driver/base/run_journal.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <string_view>

namespace {

RunJournal* current = nullptr;

// In the words of the system's tools.
constexpr std::string_view kRefusals[] = {
    "must be run as root",
    "must be root",
    "requires root",
    "run as root",
    "administrator privileges",
    "Operation not permitted",
    "not authorized",
    "Permission denied",
};
// A refusal is a line or two; anything longer is an answer, which may contain any words.
constexpr size_t kLongestRefusal = 1000;

}  // namespace

int ending_signal(const CommandEnd& end) {
  if (WIFSIGNALED(end.status)) return WTERMSIG(end.status);
  const int status = WIFEXITED(end.status) ? WEXITSTATUS(end.status) : 0;
  return status > 128 && status < 128 + NSIG ? status - 128 : 0;
}

bool names_no_tool(const CommandEnd& end) {
  if (!WIFEXITED(end.status)) return false;
  const int status = WEXITSTATUS(end.status);
  return status == 127 || status == 126;
}

RunJournal::RunJournal() { current = this; }
RunJournal::~RunJournal() { current = nullptr; }

CommandRecord* find_record(const char* command) {
  if (!current) return nullptr;
  std::vector<CommandRecord>& commands = current->commands_;
  const auto found = std::find_if(commands.begin(), commands.end(), [command](const CommandRecord& record) {
    return record.command == command;
  });
  if (found != commands.end()) return &*found;
  commands.emplace_back();
  commands.back().command = command;
  return &commands.back();
}

void enter_run(const char* command, bool is_series, const CommandEnd& end) {
  CommandRecord* record = find_record(command);
  if (!record) return;
  record->is_series = is_series;
  // Leaving out the rest of a series does not mean that it was never run.
  if (!end.started) return;
  ++record->runs;
  record->last = end;
  record->bytes = is_series ? record->bytes + end.bytes : end.bytes;
  record->seconds += end.seconds;
}

void enter_salvage(const char* command) {
  if (CommandRecord* record = find_record(command)) record->salvaged = true;
}

bool says_refused(const char* output, size_t length) {
  if (length > kLongestRefusal) return false;
  const std::string_view text(output, length);
  return std::any_of(std::begin(kRefusals), std::end(kRefusals),
                     [text](std::string_view words) { return text.find(words) != text.npos; });
}
