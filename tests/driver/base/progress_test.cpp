#include "driver/base/progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "driver/base/command.h"

namespace {

// A terminal in the place of standard error while this lives, with the progress shown on it.
class Terminal {
 public:
  explicit Terminal(unsigned short columns) : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    const int terminal = open(ptsname(master_), O_RDWR | O_NOCTTY);
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = columns;
    ioctl(terminal, TIOCSWINSZ, &size);
    std::fflush(stderr);
    saved_ = dup(STDERR_FILENO);
    dup2(terminal, STDERR_FILENO);
    close(terminal);
    show_progress(true);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    show_progress(false);
    dup2(saved_, STDERR_FILENO);
    close(saved_);
    close(master_);
  }

  // What was written since the last time; a terminal hands it on a little later.
  std::string written() const {
    std::string text;
    pollfd master = {master_, POLLIN, 0};
    while (poll(&master, 1, 50) > 0) {
      char piece[256];
      const ssize_t count = read(master_, piece, sizeof piece);
      if (count <= 0) break;
      text.append(piece, static_cast<size_t>(count));
    }
    return text;
  }

 private:
  int master_;
  int saved_;
};

std::string erased(size_t width) { return "\r" + std::string(width, ' ') + "\r"; }

TEST(Progress, ShowsTheCurrentStepWhileTheLineLives) {
  const Terminal terminal(80);
  announce("Applications", 18, 21);
  EXPECT_EQ(terminal.written(), "") << "nothing runs yet";
  {
    const ProgressLine line;
    EXPECT_EQ(terminal.written(), "\rApplications, 18 of 21, 0 s");
  }
  EXPECT_EQ(terminal.written(), erased(27));
}

TEST(Progress, ShowsNoCountWithoutOne) {
  const Terminal terminal(80);
  announce("System profiler");
  const ProgressLine line;
  EXPECT_EQ(terminal.written(), "\rSystem profiler, 0 s");
}

TEST(Progress, RewritesTheLineOnlyWhenItChanges) {
  const Terminal terminal(80);
  announce("Accounts", 1, 2);
  ProgressLine line;
  terminal.written();
  line.refresh();
  EXPECT_EQ(terminal.written(), "");
  announce("Accounts", 2, 2);
  line.refresh();
  EXPECT_EQ(terminal.written(), erased(21) + "\rAccounts, 2 of 2, 0 s");
}

TEST(Progress, CountsTheSecondsOfTheSubject) {
  const Terminal terminal(80);
  announce("Memory", 1, 2);
  ProgressLine line;
  usleep(1100000);
  announce("Memory", 2, 2);
  line.refresh();
  EXPECT_NE(terminal.written().find("\rMemory, 2 of 2, 1 s"), std::string::npos);
  announce("Power", 2, 2);
  line.refresh();
  EXPECT_NE(terminal.written().find("\rPower, 2 of 2, 0 s"), std::string::npos);
}

// In the last column a terminal may go on to the next line.
TEST(Progress, LeavesTheLastColumnOfANarrowTerminalFree) {
  const Terminal terminal(12);
  announce("Applications", 18, 21);
  { const ProgressLine line; }
  EXPECT_EQ(terminal.written(), "\rApplication" + erased(11));
}

TEST(Progress, FillsATerminalThatIsJustWideEnough) {
  const Terminal terminal(28);
  announce("Applications", 18, 21);
  { const ProgressLine line; }
  EXPECT_EQ(terminal.written(), "\rApplications, 18 of 21, 0 s" + erased(27));
}

TEST(Progress, WritesNothingToATerminalOfOneColumn) {
  const Terminal terminal(1);
  announce("Applications", 18, 21);
  { const ProgressLine line; }
  EXPECT_EQ(terminal.written(), "");
}

TEST(Progress, TreatsATerminalOfUnknownWidthAsTheUsualOne) {
  const Terminal terminal(0);
  announce(std::string(100, 'x').c_str());
  { const ProgressLine line; }
  EXPECT_EQ(terminal.written(), "\r" + std::string(79, 'x') + erased(79));
}

TEST(Progress, IsErasedOnceByASignal) {
  const Terminal terminal(80);
  announce("Sound", 21, 21);
  {
    const ProgressLine line;
    terminal.written();
    erase_progress();
    EXPECT_EQ(terminal.written(), erased(20));
  }
  EXPECT_EQ(terminal.written(), "");
  erase_progress();
  EXPECT_EQ(terminal.written(), "");
}

TEST(Progress, IsNothingWhereItIsNotShown) {
  const Terminal terminal(80);
  show_progress(false);
  EXPECT_FALSE(progress_is_shown());
  announce("Power", 21, 21);
  {
    ProgressLine line;
    line.refresh();
  }
  EXPECT_EQ(terminal.written(), "");
}

TEST(Progress, IsShownWhileACommandRunsAndGoesBeforeAMessage) {
  const Terminal terminal(80);
  announce("Audio", 21, 21);
  uint32_t length = 0;
  run_command("echo dropped >&2; printf 0123456789; sleep 1.2", &length, 100);
  EXPECT_EQ(length, 10u);
  EXPECT_EQ(terminal.written(),
            "\rAudio, 21 of 21, 0 s" + erased(20) + "\rAudio, 21 of 21, 1 s" + erased(20));
  run_command("printf 0123456789", &length, 100, 5);
  EXPECT_NE(terminal.written().find(erased(20) + "Output cut off after 5 bytes: printf 0123456789"),
            std::string::npos);
}

}  // namespace
