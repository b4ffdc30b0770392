#include "driver/base/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kBlanks[] = "                                                                                ";
constexpr size_t kWidest = sizeof kBlanks - 1;

bool is_shown = false;
std::string subject;
std::string count_text;  // ", 18 of 21"
Clock::time_point start;
std::string line;                      // as the terminal shows it
volatile std::sig_atomic_t width = 0;  // its length, for the signal handler

// Columns that a line may fill: some terminals wrap as soon as the last one is written.
size_t free_columns() {
  winsize size = {};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kWidest - 1;
  return std::min<size_t>(size.ws_col, kWidest) - 1;
}

void write_all(std::string_view text) {
  // A failed write to the terminal is not worth reporting.
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

std::string current_line() {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count();
  return (subject + count_text + ", " + std::to_string(seconds) + " s").substr(0, free_columns());
}

void draw(std::string text) {
  line = std::move(text);
  // First, so that a signal handler knows of every line there is.
  width = static_cast<std::sig_atomic_t>(line.size());
  write_all("\r" + line);
}

}  // namespace

void show_progress(bool shown) { is_shown = shown; }
bool progress_is_shown() { return is_shown; }

void announce(const char* new_subject, size_t number, size_t count) {
  if (!is_shown) return;
  if (subject != new_subject) start = Clock::now();
  subject = new_subject;
  count_text.clear();
  if (count > 0) count_text = ", " + std::to_string(number) + " of " + std::to_string(count);
}

ProgressLine::ProgressLine() { refresh(); }

ProgressLine::~ProgressLine() {
  erase_progress();
  line.clear();
}

void ProgressLine::refresh() {
  if (!is_shown) return;
  std::string text = current_line();
  if (text == line) return;
  erase_progress();
  draw(std::move(text));
}

void erase_progress() {
  if (width == 0) return;
  write_all("\r");
  write_all({kBlanks, std::min(static_cast<size_t>(width), free_columns())});
  write_all("\r");
  width = 0;
}
