#include "driver/base/command.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "driver/base/progress.h"
#include "driver/base/run_journal.h"
#include "driver/base/shell_process.h"
#include "driver/base/tool_path.h"

extern char** environ;

namespace {

using std::chrono::milliseconds;

// The progress line counts seconds.
constexpr milliseconds kStep(1000);

milliseconds longest_silence = kLongestSilence;

// A text that is read piece by piece into a buffer that doubles.
class Capture {
 public:
  explicit Capture(uint32_t chunk) : capacity_(chunk), text_(new char[chunk]) {}

  uint32_t length() const { return length_; }

  // False at the end of the output.
  bool read_from(const ShellProcess& process) {
    if (length_ == capacity_) grow(2 * capacity_);
    const size_t count = process.read(text_.get() + length_, capacity_ - length_);
    length_ += static_cast<uint32_t>(count);
    return count > 0;
  }

  void cut(uint32_t length) { length_ = length; }

  Text finish() {
    if (length_ == capacity_) grow(length_ + 1);
    text_[length_] = '\0';
    return std::move(text_);
  }

 private:
  void grow(uint32_t capacity) {
    Text larger(new char[capacity]);
    std::memcpy(larger.get(), text_.get(), length_);
    text_ = std::move(larger);
    capacity_ = capacity;
  }

  uint32_t capacity_;
  uint32_t length_ = 0;
  Text text_;
};

// This program's environment with the PATH that finds the tools.
class ToolEnvironment {
 public:
  ToolEnvironment() : path_("PATH=" + complete_tool_path(std::getenv("PATH"))) {
    for (char** variable = environ; variable && *variable; ++variable) {
      if (std::strncmp(*variable, "PATH=", 5) != 0) variables_.push_back(*variable);
    }
    variables_.push_back(path_.data());
    variables_.push_back(nullptr);
  }
  char* const* get() const { return variables_.data(); }

 private:
  std::string path_;
  std::vector<char*> variables_;
};

// Waits for an answer in short steps, so that the operator sees the time pass; false if it takes too long.
template <typename Answered>
bool wait_patiently(ProgressLine& progress, Answered answered) {
  for (milliseconds left = longest_silence; left > milliseconds(0); left -= kStep) {
    if (answered(std::min(left, kStep))) return true;
    progress.refresh();
  }
  return false;
}

enum class Ending { complete, cut, given_up };

// Reads until the command has ended; only then has everything it printed arrived.
Ending read_output(ShellProcess& process, Capture& capture, uint32_t limit) {
  ProgressLine progress;
  for (;;) {
    if (!wait_patiently(progress, [&](milliseconds time) { return process.wait_for_output(time); })) {
      return Ending::given_up;
    }
    if (!capture.read_from(process)) break;
    if (capture.length() > limit) return Ending::cut;
    progress.refresh();
  }
  const bool ended = wait_patiently(progress, [&](milliseconds time) { return process.wait_for_end(time); });
  return ended ? Ending::complete : Ending::given_up;
}

struct Command {
  const char* name;                    // for messages and the journal
  const char* series;                  // its name in the journal; null outside a series
  std::vector<const char*> arguments;  // those after "sh -c"
  char* const* environment;
};

struct Run {
  Text output;  // null when no shell could be started
  uint32_t length = 0;
  CommandEnd end;
};

void enter(const Command& command, const CommandEnd& end) {
  enter_run(command.series ? command.series : command.name, command.series != nullptr, end);
}

Run run_shell_process(const Command& command, uint32_t chunk, uint32_t limit) {
  Capture capture(chunk);
  Run run;
  {
    const ToolErrors errors = progress_is_shown() ? ToolErrors::dropped : ToolErrors::kept;
    ShellProcess process(command.arguments, command.environment, errors);
    run.end.started = process.started();
    if (!run.end.started) return run;
    const Ending ending = read_output(process, capture, limit);
    run.end.cut = ending == Ending::cut;
    run.end.silent = ending == Ending::given_up;
    run.end.status = process.status();
  }
  if (run.end.cut) {
    capture.cut(limit);
    std::fprintf(stderr, "Output cut off after %u bytes: %s\n", limit, command.name);
  } else if (run.end.silent) {
    std::fprintf(stderr, "Gave up waiting for: %s\n", command.name);
  }
  run.length = capture.length();
  // The tool may have failed; what it printed counts all the same.
  run.output = capture.finish();
  return run;
}

Run run_shell(const Command& command, uint32_t chunk, uint32_t limit) {
  const auto start = std::chrono::steady_clock::now();
  Run run = run_shell_process(command, chunk, limit);
  run.end.bytes = run.length;
  run.end.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.end.refused = run.end.status != 0 && says_refused(run.output.get(), run.length);
  enter(command, run.end);
  return run;
}

Run run_with_tools(const char* command_line, uint32_t chunk, uint32_t limit, const char* series = nullptr) {
  return run_shell({command_line, series, {command_line}, ToolEnvironment().get()}, chunk, limit);
}

}  // namespace

void set_longest_silence(milliseconds time) { longest_silence = time; }

Text run_command(const char* command_line, uint32_t* length, uint32_t chunk, uint32_t limit) {
  Run run = run_with_tools(command_line, chunk, limit);
  *length = run.length;
  return std::move(run.output);
}

Text run_if_there(const char* command_line, uint32_t* length, uint32_t chunk, uint32_t limit) {
  Run run = run_with_tools(command_line, chunk, limit);
  const bool there = !names_no_tool(run.end);
  *length = there ? run.length : 0;
  return there ? std::move(run.output) : nullptr;
}

Text run_in_own_environment(const char* tool, uint32_t* length, uint32_t chunk, uint32_t limit) {
  const char* own_path = std::getenv("PATH");
  const std::string path = complete_tool_path(own_path);
  std::vector<const char*> arguments = {tool};
  // The other PATH is set only for the subshell, and only to find the tool.
  const Text found = format_string("\"$(PATH=$0; command -v %s)\"", tool);
  if (!equal_text(own_path, path.c_str())) arguments = {found.get(), path.c_str()};
  Run run = run_shell({tool, nullptr, arguments, environ}, chunk, limit);
  *length = run.length;
  return std::move(run.output);
}

// The limit applies to this program too, since new processes inherit it from here. So this program handles
// the signal sent at the limit; a handler is not inherited.
WorkLimit::WorkLimit(unsigned seconds) : handler_before_(std::signal(SIGXCPU, [](int) {})) {
  getrlimit(RLIMIT_CPU, &before_);
  rlimit limit = before_;
  limit.rlim_cur = std::min<rlim_t>(before_.rlim_cur, seconds);
  setrlimit(RLIMIT_CPU, &limit);
}

WorkLimit::~WorkLimit() {
  setrlimit(RLIMIT_CPU, &before_);
  std::signal(SIGXCPU, handler_before_);
}

Text CommandSeries::run(const char* command_line, uint32_t* length) {
  *length = 0;
  if (used_up()) {
    CommandEnd left_out;
    left_out.started = false;
    enter({command_line, name_, {}, nullptr}, left_out);
    if (!ended_) std::fprintf(stderr, "No longer run: %s\n", command_line);
    ended_ = true;
    return nullptr;
  }
  --left_.runs;
  Run run = run_with_tools(command_line, chunk_, std::min(left_.one_output, left_.all_outputs), name_);
  *length = run.length;
  left_.all_outputs -= run.length;
  gave_up_ = run.end.silent;
  if (gave_up_) --left_.hangs;
  return std::move(run.output);
}
