// The line on the operator's terminal that tells what the scan is asking for, and how long that has taken:
// "Applications, 18 of 21, 12 s". It stands there only while a tool runs, so that nothing else that is
// printed ever meets it.
#pragma once

#include <cstddef>

// Whether there is such a line from now on, on standard error, which is a terminal then. Without this call
// there is none, and nothing here writes a byte.
void show_progress(bool shown);
bool progress_is_shown();

// What is asked from now on: a subject, and which question about it, from 1 on, of how many; no count is told
// when it is 0. The seconds begin with a subject that is another one than before.
void announce(const char* subject, size_t number = 0, size_t count = 0);

// The line is there as long as this is.
class ProgressLine {
 public:
  ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine();

  // Writes the line anew when what it tells has changed.
  void refresh();
};

// Leaves the terminal's line empty where the progress stood; may be called by a signal handler.
void erase_progress();
