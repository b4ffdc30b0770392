#include "driver/base/shell_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <thread>

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr microseconds kFirstPause(50);
constexpr microseconds kLongestPause(20000);
// A process that was killed is gone at once, unless the kernel holds it.
constexpr milliseconds kLongestDying(1000);

volatile std::sig_atomic_t running_group = 0;

// The ends of a pipe that no tool inherits.
bool make_pipe(int (&ends)[2]) {
  if (pipe(ends) != 0) return false;
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return true;
}

// How the child gets its descriptors and its process group.
class SpawnPlan {
 public:
  SpawnPlan(int output, ToolErrors errors) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    if (errors == ToolErrors::dropped) {
      posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes_, 0);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }

  const posix_spawn_file_actions_t* actions() const { return &actions_; }
  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

}  // namespace

ShellProcess::ShellProcess(const std::vector<const char*>& arguments, char* const* environment,
                           ToolErrors errors) {
  int ends[2];
  if (!make_pipe(ends)) return;
  output_ = ends[0];
  const bool is_started = start(arguments, environment, errors, ends[1]);
  close(ends[1]);
  if (is_started) running_group = static_cast<std::sig_atomic_t>(id_);
}

bool ShellProcess::start(const std::vector<const char*>& arguments, char* const* environment,
                         ToolErrors errors, int output) {
  const SpawnPlan plan(output, errors);
  std::vector<char*> all = {const_cast<char*>("sh"), const_cast<char*>("-c")};
  for (const char* argument : arguments) all.push_back(const_cast<char*>(argument));
  all.push_back(nullptr);
  if (posix_spawn(&id_, "/bin/sh", plan.actions(), plan.attributes(), all.data(), environment) == 0)
    return true;
  id_ = 0;
  return false;
}

ShellProcess::~ShellProcess() {
  if (output_ >= 0) close(output_);
  if (!started()) return;
  kill(-id_, SIGKILL);
  wait_for_end(kLongestDying);
  running_group = 0;
}

bool ShellProcess::wait_for_output(milliseconds longest) const {
  pollfd output = {output_, POLLIN, 0};
  return poll(&output, 1, static_cast<int>(longest.count())) > 0;
}

size_t ShellProcess::read(char* bytes, size_t room) const {
  for (;;) {
    const ssize_t count = ::read(output_, bytes, room);
    if (count >= 0) return static_cast<size_t>(count);
    if (errno != EINTR) return 0;
  }
}

bool ShellProcess::has_ended() {
  if (waitpid(id_, &status_, WNOHANG) == 0) return false;
  id_ = 0;
  running_group = 0;
  return true;
}

// The end usually follows the last byte closely; no call waits for a process with a timeout.
bool ShellProcess::wait_for_end(milliseconds longest) {
  microseconds pause = kFirstPause;
  for (microseconds waited(0); !has_ended(); waited += pause, pause = std::min(2 * pause, kLongestPause)) {
    if (waited >= longest) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

void signal_running_command(int signal_number) {
  if (running_group > 0) kill(-static_cast<pid_t>(running_group), signal_number);
}
