// The outcome of the commands that a scan ran, for a scan that records how it went.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// How one run of a command ended.
struct CommandEnd {
  bool started = true;   // false: there is no shell, or the command was left out
  bool cut = false;      // its output was too long
  bool silent = false;   // it was given up because it said nothing for too long
  int status = 0;        // as waitpid gives it; 0 for a command that had to be ended
  uint64_t bytes = 0;    // of its output
  double seconds = 0;    // until it had ended
  bool refused = false;  // it failed, and said that it needs an administrator
};

// The number of the signal that ended it, or 0. A shell that waited for the tool reports it as a status of
// 128 and that number.
int ending_signal(const CommandEnd& end);
// True when the shell found no such tool, or only one that cannot be run.
bool names_no_tool(const CommandEnd& end);

// All runs of one command: one command line, or the lines of a series.
struct CommandRecord {
  std::string command;
  bool is_series = false;  // each run had other arguments; otherwise all but the first were retries
  uint32_t runs = 0;       // 0: it was left out
  bool salvaged = false;   // the output was damaged, and read as far as it could be
  CommandEnd last;
  uint64_t bytes = 0;  // of all outputs of a series; else of the last one
  double seconds = 0;  // of all runs
};

// While this lives, every command that is run is entered here; without one, nothing is kept. One at a time.
class RunJournal {
 public:
  RunJournal();
  RunJournal(const RunJournal&) = delete;
  RunJournal& operator=(const RunJournal&) = delete;
  ~RunJournal();

  // In the order of their first runs.
  const std::vector<CommandRecord>& commands() const { return commands_; }

 private:
  friend CommandRecord* find_record(const char* command);

  std::vector<CommandRecord> commands_;
};

// The command's record in the journal, a new one when it has none yet; null when no journal is kept. It stays
// where it is until the next call.
CommandRecord* find_record(const char* command);

// Enters a run, or that the command was left out.
void enter_run(const char* command, bool is_series, const CommandEnd& end);
// Enters that the command's output had to be salvaged.
void enter_salvage(const char* command);

// True if the output of a failed tool says that it needs an administrator.
bool says_refused(const char* output, size_t length);
