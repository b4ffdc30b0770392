// What commands over many files have in common besides the list of files: threads, what happens to files that
// cannot be read, progress, and the final line.
#pragma once

#include <chrono>
#include <string>

#include "inv/commands/command.h"
#include "inv/show/terminal.h"

namespace inv {

// An opened file with everything to report about it; nothing is printed yet.
struct Opened {
  std::string path;
  std::unique_ptr<Inventory> inventory;  // null if it cannot be read as an inventory at all
  std::vector<std::string> faults;       // clauses
  size_t masked = 0;                     // number of masked secrets
};

Opened open_quietly(const std::string& path, uint64_t max_size);
// How much memory it takes, roughly, in bytes.
uint64_t weight_of(const Inventory* inventory);
// Reports the faults. The status becomes kUnusable for a file that cannot be read and kNo for a damaged one,
// unless it is already worse. False if it cannot be read.
bool complain_of(const Opened& opened, int& status);

// The options --jobs, the number of threads that read files, and --quarantine, a folder for unreadable files.
void add_jobs(CLI::App& command, size_t& jobs);
void add_quarantine(CLI::App& command, std::string& folder);

// Puts a file that cannot be read into the folder, which is created if missing: a hard link to the file, or a
// copy, and a text that says what is wrong. The file itself stays. Reports what fails, with status kUnusable.
void set_aside(const Opened& opened, const std::string& folder, int& status);

// A progress line on standard error if that is a terminal: a bar, the rate, and the remaining time.
class Progress {
 public:
  // `quiet` if the output itself goes to the terminal.
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

// Counts what became of the files, for a line at the end: "12 loaded, 1 skipped, 0 refused, 0.4 s".
class Tally {
 public:
  // The fates in order; those with a count of 0 are listed too.
  explicit Tally(std::vector<std::string> fates);
  void count(size_t fate) { ++counts_[fate]; }
  // Prints the line on standard error.
  void print() const;

 private:
  using Clock = std::chrono::steady_clock;

  std::vector<std::string> fates_;
  std::vector<size_t> counts_;
  Clock::time_point start_ = Clock::now();
};

}  // namespace inv
