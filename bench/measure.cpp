// Runs a command and prints what it used itself, without its children: "CPU_NANOSECONDS PEAK_KILOBYTES" as
// the last line of standard error.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

// User and system time of a process that has ended but is still listed; wait4 would add that of its children.
// 0 when the kernel does not say.
long long own_nanoseconds(pid_t process) {
  const std::string path = "/proc/" + std::to_string(process) + "/schedstat";
  std::FILE* file = std::fopen(path.c_str(), "r");
  if (!file) return 0;
  long long nanoseconds = 0;
  if (std::fscanf(file, "%lld", &nanoseconds) != 1) nanoseconds = 0;
  std::fclose(file);
  return nanoseconds;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 64;
  // A child starts with its parent's peak memory, so this program must be, and is, the smaller one.
  const pid_t process = fork();
  if (process == 0) {
    execvp(arguments[1], arguments + 1);
    std::perror(arguments[1]);
    _exit(127);
  }
  siginfo_t ended;
  if (process < 0 || waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT) != 0) return 1;
  const long long nanoseconds = own_nanoseconds(process);
  int status = 0;
  rusage usage;
  wait4(process, &status, 0, &usage);
  std::fprintf(stderr, "%lld %ld\n", nanoseconds, usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
