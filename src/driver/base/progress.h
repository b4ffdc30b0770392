// The line on the operator's terminal that says what the scan is asking for, and for how long: "Applications,
// 18 of 21, 12 s". It is shown only while a tool runs, so that nothing else is ever printed into it.
#pragma once

#include <cstddef>

// Turns the line on or off; it goes to standard error, which must then be a terminal. Without this call it is
// off, and nothing here writes a byte.
void show_progress(bool shown);
bool progress_is_shown();

// What is being asked from now on: a subject, and the number of the question about it, from 1, out of
// `count`; a count of 0 is not shown. The seconds restart when the subject changes.
void announce(const char* subject, size_t number = 0, size_t count = 0);

// The line is shown while this lives.
class ProgressLine {
 public:
  ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine();

  // Rewrites the line when its text has changed.
  void refresh();
};

// Clears the progress from the terminal's line; may be called by a signal handler.
void erase_progress();
