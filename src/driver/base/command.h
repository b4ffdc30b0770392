// Running the system's own tools through the shell: the only way in for facts, but for the process table.
#pragma once

#include <sys/resource.h>

#include <chrono>
#include <cstdint>

#include "driver/base/text.h"

// No tool has that much to say; a longer output is a tool gone wild. In bytes.
constexpr uint32_t kCommandOutputLimit = 512u << 20;

// A tool that neither prints nor ends is waited for so long: one that asks a lost network volume hangs for
// ever.
constexpr std::chrono::minutes kLongestSilence(30);
// Another time for this program's further commands, of which tests make use.
void set_longest_silence(std::chrono::milliseconds time);

// Runs a command line and returns everything that it wrote to its standard output, NUL-terminated, and the
// number of bytes through `length`. Its standard input is empty; its standard error goes wherever this
// program's goes, but nowhere where the progress is shown (progress.h); its exit status is not looked at. A
// command that writes nothing gives an empty text; none, and length 0, only when no shell could be started.
// Output beyond `limit` bytes, which is below 2 GiB, is cut off, and a command that stays silent too long is
// given up; of either a line on standard error tells, what had been printed counts, and the command is ended.
// `chunk` is the size of the first buffer in bytes: at least 1, at most 1 GiB.
//
// The command finds the system's tools also where this program's PATH lacks their directories (tool_path.h).
Text run_command(const char* command_line, uint32_t* length, uint32_t chunk,
                 uint32_t limit = kCommandOutputLimit);

// The same for a tool without arguments that is to see the environment as this program got it: it is found
// like any other, but its PATH is the untouched one, or none.
Text run_in_own_environment(const char* tool, uint32_t* length, uint32_t chunk,
                            uint32_t limit = kCommandOutputLimit);

// The same for a tool that not every system has: none, and length 0, also when the shell finds no such tool.
Text run_if_there(const char* command_line, uint32_t* length, uint32_t chunk,
                  uint32_t limit = kCommandOutputLimit);

// While this lives, every process of a command that is started is ended when it has worked for some seconds
// of processor time; this program is not. For a command line that is a pipeline: what its first tool prints
// never comes to us, so that an endless output cannot be cut.
class WorkLimit {
 public:
  // At least 1 second.
  explicit WorkLimit(unsigned seconds);
  WorkLimit(const WorkLimit&) = delete;
  WorkLimit& operator=(const WorkLimit&) = delete;
  ~WorkLimit();

 private:
  rlimit before_;
  void (*handler_before_)(int);
};

// How much may come of a tool that is run again and again, each time for something else. In bytes.
struct SeriesLimits {
  uint32_t one_output = kCommandOutputLimit;
  uint32_t all_outputs = 2 * kCommandOutputLimit;
  uint32_t runs = UINT32_MAX;
  uint32_t hangs = UINT32_MAX;  // how often it may be given up because it stays silent
};

// Such runs. The outputs have their limits together as well; a tool that has come to them is not run any
// more.
class CommandSeries {
 public:
  // The name is what a journal has the runs under (run_journal.h): what their command lines have in common.
  // Without one, each command line stands there by itself.
  CommandSeries(uint32_t chunk, const SeriesLimits& limits, const char* name = nullptr)
      : chunk_(chunk), left_(limits), name_(name) {}

  // As run_command; none, and length 0, when the tool is not run any more, of which the first time a line on
  // standard error tells.
  Text run(const char* command_line, uint32_t* length);
  bool used_up() const { return left_.runs == 0 || left_.all_outputs == 0 || left_.hangs == 0; }
  // True when the last run was silent until it was given up: nor would it answer when asked again.
  bool gave_up() const { return gave_up_; }

 private:
  uint32_t chunk_;
  SeriesLimits left_;
  const char* name_;
  bool gave_up_ = false;
  bool ended_ = false;
};
