// What commands over many files have in common beside the list of them: threads, what becomes of files that
// cannot be read, progress, and the line at the end.
#pragma once

#include <chrono>
#include <string>

#include "inv/commands/command.h"
#include "inv/show/terminal.h"

namespace inv {

// An opened file with all that is to be said about it; nothing is printed yet.
struct Opened {
  std::string path;
  std::unique_ptr<Inventory> inventory;  // none when it cannot be read as one at all
  std::vector<std::string> faults;       // clauses
  size_t masked = 0;                     // secrets, by the command
};

Opened open_quietly(const std::string& path, uint64_t max_size);
// Complains of the faults. The status becomes kUnusable for a file that cannot be read, kNo for one that is
// damaged, unless it is worse already. False when it cannot be read.
bool complain_of(const Opened& opened, int& status);

// The options --jobs, on how many threads files are read, and --quarantine, a folder for those that cannot
// be.
void add_jobs(CLI::App& command, size_t& jobs);
void add_quarantine(CLI::App& command, std::string& folder);

// Puts a file that cannot be read into the folder, which is made when it is missing: another name of the same
// file, or a copy of it, and beside it a text with what is wrong. The file itself stays. Complains of what
// fails, with status kUnusable.
void set_aside(const Opened& opened, const std::string& folder, int& status);

// A line on standard error, for a person at a terminal: a bar, the rate, and the time that remains.
class Progress {
 public:
  // Quiet where the output itself goes to the terminal.
  explicit Progress(size_t total, bool quiet = false) : total_(total), terminal_(error_terminal()) {
    terminal_.interactive = terminal_.interactive && !quiet;
  }
  ~Progress() { draw("\r\x1B[K"); }

  void show(size_t done);

 private:
  using Clock = std::chrono::steady_clock;

  void draw(const std::string& text) const;

  size_t total_;
  size_t shown_ = 0;
  Clock::time_point start_ = Clock::now();
  Terminal terminal_;
};

// How many files had which fate, told in one line at the end: "12 loaded, 1 skipped, 0 refused, 0.4 s".
class Tally {
 public:
  // The fates in their order; those that are never reached are told too.
  explicit Tally(std::vector<std::string> fates);
  void count(size_t fate) { ++counts_[fate]; }
  // On standard error.
  void tell() const;

 private:
  using Clock = std::chrono::steady_clock;

  std::vector<std::string> fates_;
  std::vector<size_t> counts_;
  Clock::time_point start_ = Clock::now();
};

}  // namespace inv
