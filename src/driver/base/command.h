// Running the system's own tools through the shell: where every fact comes from, except the process table.
#pragma once

#include <sys/resource.h>

#include <chrono>
#include <cstdint>

#include "driver/base/text.h"

// No tool has that much to print; one that prints more has run wild. In bytes.
constexpr uint32_t kCommandOutputLimit = 512u << 20;

// How long to wait for a tool that neither prints nor ends: one that accesses a lost network volume hangs for
// ever.
constexpr std::chrono::minutes kLongestSilence(30);
// Sets another time for this program's later commands; for tests.
void set_longest_silence(std::chrono::milliseconds time);

// Runs a command line and returns everything that it wrote to its standard output, NUL-terminated, with the
// number of bytes in `length`. Its standard input is empty; its standard error goes where this program's
// goes, or nowhere while the progress is shown (progress.h); its exit status is ignored. A command that
// writes nothing gives an empty text; null, and length 0, only when no shell could be started. Output beyond
// `limit` bytes, which is below 2 GiB, is cut off, and a command that stays silent too long is given up.
// Either way a line on standard error says so, the command is ended, and what it had printed counts. `chunk`
// is the size of the first buffer in bytes: at least 1, at most 1 GiB.
//
// The command finds the system's tools even when this program's PATH lacks their directories (tool_path.h).
Text run_command(const char* command_line, uint32_t* length, uint32_t chunk,
                 uint32_t limit = kCommandOutputLimit);

// The same for a tool without arguments that must see the environment as this program got it: it is found
// like any other, but its PATH is left as it was, set or not.
Text run_in_own_environment(const char* tool, uint32_t* length, uint32_t chunk,
                            uint32_t limit = kCommandOutputLimit);

// The same for a tool that not every system has: null, and length 0, also when the shell finds no such tool.
Text run_if_there(const char* command_line, uint32_t* length, uint32_t chunk,
                  uint32_t limit = kCommandOutputLimit);

// While this lives, each process of a command that is started may use only some seconds of processor time;
// this program is not limited. For pipelines: what their first tool prints never reaches us, so endless
// output cannot be cut off.
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

// How much a tool may print that is run again and again, each time for something else. In bytes.
struct SeriesLimits {
  uint32_t one_output = kCommandOutputLimit;
  uint32_t all_outputs = 2 * kCommandOutputLimit;
  uint32_t runs = UINT32_MAX;
  uint32_t hangs = UINT32_MAX;  // how often it may be given up for staying silent
};

// Such runs. All outputs together are limited too; a tool that has reached a limit is no longer run.
class CommandSeries {
 public:
  // The name is what a journal has the runs under (run_journal.h): what their command lines have in common.
  // Without one, the journal has each command line separately.
  CommandSeries(uint32_t chunk, const SeriesLimits& limits, const char* name = nullptr)
      : chunk_(chunk), left_(limits), name_(name) {}

  // As run_command; null, and length 0, when the tool is no longer run, which a line on standard error
  // reports once.
  Text run(const char* command_line, uint32_t* length);
  bool used_up() const { return left_.runs == 0 || left_.all_outputs == 0 || left_.hangs == 0; }
  // True when the last run was silent until it was given up: it would not answer a second time either.
  bool gave_up() const { return gave_up_; }

 private:
  uint32_t chunk_;
  SeriesLimits left_;
  const char* name_;
  bool gave_up_ = false;
  bool ended_ = false;
};
