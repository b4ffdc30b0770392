#include "driver/base/command.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>

#include "driver/base/shell_process.h"
#include "fake_tools.h"

namespace {

struct Outcome {
  bool started;
  std::string output;
  char terminator;
};

Outcome run(const std::string& command, uint32_t chunk, uint32_t limit = kCommandOutputLimit) {
  uint32_t length = 12345;
  const Text text = run_command(command.c_str(), &length, chunk, limit);
  if (!text) return {false, std::string(length, '?'), '?'};
  return {true, std::string(text.get(), length), text[length]};
}

// Prints `count` times the letter x; a shell word list would be too long.
std::string print_letters(unsigned count) {
  return "dd if=/dev/zero bs=" + std::to_string(count) + " count=1 2>/dev/null | tr '\\0' x";
}

void expect_output(const Outcome& result, const std::string& output) {
  ASSERT_TRUE(result.started);
  EXPECT_EQ(result.output, output);
  EXPECT_EQ(result.terminator, '\0');
}

TEST(RunCommand, GivesTheEmptyTextWhenNothingIsPrinted) { expect_output(run("true", 100), ""); }

TEST(RunCommand, CapturesLessThanAChunk) { expect_output(run("echo hello", 100), "hello\n"); }

TEST(RunCommand, TerminatesOutputThatFillsTheChunkExactly) {
  expect_output(run(print_letters(100), 100), std::string(100, 'x'));
}

TEST(RunCommand, CapturesOneByteMoreAndLessThanAChunk) {
  expect_output(run(print_letters(99), 100), std::string(99, 'x'));
  expect_output(run(print_letters(101), 100), std::string(101, 'x'));
}

TEST(RunCommand, GrowsForTwoAndAHalfChunks) {
  expect_output(run(print_letters(250), 100), std::string(250, 'x'));
}

TEST(RunCommand, TerminatesOutputThatFillsAGrownBufferExactly) {
  expect_output(run(print_letters(400), 100), std::string(400, 'x'));
}

TEST(RunCommand, ReadsByteByByteWhenTheChunkIsOne) { expect_output(run("printf abc", 1), "abc"); }

TEST(RunCommand, GathersOutputThatComesInPieces) {
  expect_output(run("printf ab; sleep 0.05; printf cd; sleep 0.05; printf ef", 100), "abcdef");
}

TEST(RunCommand, CapturesMegabytes) {
  expect_output(run(print_letters(5000000), 65536), std::string(5000000, 'x'));
}

TEST(RunCommand, KeepsNulBytes) {
  expect_output(run("printf 'a\\000b\\000'", 100), std::string("a\0b\0", 4));
}

TEST(RunCommand, RunsTheLineThroughTheShell) {
  expect_output(run("for i in 1 2; do echo \"<$i>\"; done | tr 1 9", 100), "<9>\n<2>\n");
}

TEST(RunCommand, KeepsWhatAFailingCommandSaid) { expect_output(run("printf said; exit 3", 100), "said"); }

TEST(RunCommand, KeepsWhatAKilledCommandSaid) { expect_output(run("printf said; kill -9 $$", 100), "said"); }

TEST(RunCommand, EndsWhenTheCommandClosesItsOutputEarly) {
  expect_output(run("printf said; exec >&-; sleep 0.05", 100), "said");
}

TEST(RunCommand, GivesTheEmptyTextForAMissingCommand) {
  testing::internal::CaptureStderr();
  const Outcome result = run("/nonexistent/tool --flag", 100);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("/nonexistent/tool"), std::string::npos)
      << "the shell's complaint goes to our standard error";
  expect_output(result, "");
}

TEST(RunCommand, LeavesStandardErrorAlone) {
  testing::internal::CaptureStderr();
  const Outcome result = run("echo out; echo err >&2", 100);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "err\n");
  expect_output(result, "out\n");
}

TEST(RunCommand, KeepsOutputOfExactlyTheLimitInSilence) {
  testing::internal::CaptureStderr();
  const Outcome result = run(print_letters(250), 100, 250);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  expect_output(result, std::string(250, 'x'));
}

TEST(RunCommand, CutsOutputBeyondTheLimitAndSaysSo) {
  testing::internal::CaptureStderr();
  const Outcome result = run("printf 0123456789", 4, 9);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Output cut off after 9 bytes: printf 0123456789\n");
  expect_output(result, "012345678");
}

TEST(RunCommand, CutsOutputBeyondALimitBelowTheChunk) {
  testing::internal::CaptureStderr();
  const Outcome result = run("printf 0123456789", 100, 3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Output cut off after 3 bytes: printf 0123456789\n");
  expect_output(result, "012");
}

TEST(RunCommand, EndsACommandThatPrintsForever) {
  testing::internal::CaptureStderr();
  const Outcome result = run("yes", 65536, 1000000);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Output cut off after 1000000 bytes: yes\n");
  ASSERT_TRUE(result.started);
  EXPECT_EQ(result.output.size(), 1000000u);
}

// A tool that runs wild may also ignore the end of its pipe.
TEST(RunCommand, EndsACommandThatPrintsForeverThoughNobodyReads) {
  testing::internal::CaptureStderr();
  const Outcome result = run("trap '' PIPE; while :; do echo more; done 2>/dev/null", 100, 1000);
  EXPECT_EQ(testing::internal::GetCapturedStderr().rfind("Output cut off after 1000 bytes: trap", 0), 0u);
  EXPECT_EQ(result.output.size(), 1000u);
}

TEST(RunCommand, GivesACommandNothingToRead) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const int saved = dup(STDIN_FILENO);
  dup2(ends[0], STDIN_FILENO);
  expect_output(run("cat; echo over", 100), "over\n");
  dup2(saved, STDIN_FILENO);
  for (const int descriptor : {ends[0], ends[1], saved}) close(descriptor);
}

// A variable of the environment as a test needs it; null unsets it.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    const char* before = std::getenv(name);
    if ((had_value_ = before)) before_ = before;
    set(value);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { set(had_value_ ? before_.c_str() : nullptr); }

 private:
  void set(const char* value) const { value ? setenv(name_, value, 1) : unsetenv(name_); }

  const char* name_;
  bool had_value_;
  std::string before_;
};

std::string path_of_tools() { return run("printf '%s' \"$PATH\"", 100).output; }

TEST(RunCommand, CompletesThePathOfTheTools) {
  for (const char* path : {"/nowhere", "/nowhere:", "", static_cast<const char*>(nullptr)}) {
    const Variable variable("PATH", path);
    const std::string kept = path && *path ? std::string(path) + ":" : "";
    EXPECT_EQ(path_of_tools(), kept + "/usr/bin:/bin:/usr/sbin:/sbin");
    expect_output(run("env | grep -c ^PATH=", 100), "1\n");
  }
}

TEST(RunCommand, LeavesTheOtherVariablesAsTheyAre) {
  const Variable path("PATH", "/nowhere"), other("PATH_OF_MINE", "a b\n=c"), empty("EMPTY", "");
  expect_output(run("printf '%s<%s>' \"$PATH_OF_MINE\" \"${EMPTY-unset}\"", 100), "a b\n=c<>");
  EXPECT_STREQ(std::getenv("PATH"), "/nowhere") << "this program's own stays";
}

// What env prints of PATH: its line, or nothing.
std::string path_of_env() {
  uint32_t length = 7;
  const Text output = run_in_own_environment("env", &length, 300);
  if (!output || length == 0) return "env was not found";
  const std::string lines = "\n" + std::string(output.get(), length);
  const size_t start = lines.find("\nPATH=");
  return start == lines.npos ? "" : lines.substr(start + 1, lines.find('\n', start + 1) - start - 1);
}

TEST(RunInOwnEnvironment, ShowsTheCallersPath) {
  for (const char* path : {"/nowhere", "/nowhere:", "/it's \"mine\" $HOME", "/usr/sbin:/sbin", ":",
                           "/sbin:/usr/sbin:/bin:/usr/bin", "/bin:/usr/bin:/bin"}) {
    const Variable variable("PATH", path);
    EXPECT_EQ(path_of_env(), std::string("PATH=") + path);
  }
}

TEST(RunInOwnEnvironment, ShowsNoPathToACallerWithoutOne) {
  const Variable variable("PATH", nullptr);
  EXPECT_EQ(path_of_env(), "");
}

TEST(RunInOwnEnvironment, TakesTheToolThatTheCallerHas) {
  const FakeTools tools;
  tools.write("env", "echo PATH=mine");
  EXPECT_EQ(path_of_env(), "PATH=mine");
  const Variable variable("PATH", tools.file("").c_str());
  EXPECT_EQ(path_of_env(), "PATH=mine");
}

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

class LongestSilence {
 public:
  explicit LongestSilence(milliseconds time) { set_longest_silence(time); }
  LongestSilence(const LongestSilence&) = delete;
  LongestSilence& operator=(const LongestSilence&) = delete;
  ~LongestSilence() { set_longest_silence(kLongestSilence); }
};

bool has_gone(const std::string& process) { return kill(static_cast<pid_t>(std::stoi(process)), 0) != 0; }

// Orphaned processes are gone a moment after they are killed.
void expect_gone(const std::string& process) {
  for (int i = 0; i < 500 && !has_gone(process); ++i) std::this_thread::sleep_for(milliseconds(10));
  EXPECT_TRUE(has_gone(process)) << process;
}

TEST(Silence, MayLastHalfAnHour) { EXPECT_EQ(kLongestSilence, milliseconds(1800000)); }

TEST(Silence, ThatLastsTooLongEndsTheCommandAndKeepsWhatItSaid) {
  const LongestSilence silence(milliseconds(200));
  testing::internal::CaptureStderr();
  const auto start = Clock::now();
  const Outcome result = run("echo said $$; sleep 1000; echo never", 100);
  EXPECT_GE(Clock::now() - start, milliseconds(200));
  EXPECT_LT(Clock::now() - start, milliseconds(5000));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Gave up waiting for: echo said $$; sleep 1000; echo never\n");
  ASSERT_EQ(result.output.substr(0, 5), "said ");
  EXPECT_TRUE(has_gone(result.output.substr(5))) << "the shell has been waited for";
}

TEST(Silence, EndsAllProcessesOfThePipeline) {
  const LongestSilence silence(milliseconds(500));
  testing::internal::CaptureStderr();
  const Outcome result = run("sleep 1000 & echo $!; sleep 1000 | cat", 100);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  expect_gone(result.output);
}

TEST(Silence, CountsFromTheLastByte) {
  const LongestSilence silence(milliseconds(1500));
  testing::internal::CaptureStderr();
  expect_output(run("for i in 1 2 3 4; do sleep 0.5; printf $i; done", 100), "1234");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Silence, AfterTheEndOfTheOutputEndsTheCommandToo) {
  const LongestSilence silence(milliseconds(200));
  testing::internal::CaptureStderr();
  const Outcome result = run("echo $$; exec >&-; exec sleep 1000", 100);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Gave up waiting for: echo $$; exec >&-; exec sleep 1000\n");
  EXPECT_TRUE(has_gone(result.output));
}

TEST(Silence, OfAProcessThatHoldsTheOutputOpenEndsToo) {
  const LongestSilence silence(milliseconds(300));
  testing::internal::CaptureStderr();
  const Outcome result = run("sleep 1000 & echo $!", 100);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Gave up waiting for: sleep 1000 & echo $!\n");
  expect_gone(result.output);
}

TEST(SignalRunningCommand, ReachesAllItsProcesses) {
  std::thread sender([] {
    std::this_thread::sleep_for(milliseconds(300));
    signal_running_command(SIGTERM);
  });
  const auto start = Clock::now();
  expect_output(run("printf said; sleep 1000 | cat; printf never", 100), "said");
  sender.join();
  EXPECT_LT(Clock::now() - start, milliseconds(60000));
  signal_running_command(SIGTERM);  // which nothing gets now
}

rlim_t work_limit() {
  rlimit limit = {};
  getrlimit(RLIMIT_CPU, &limit);
  return limit.rlim_cur;
}

TEST(WorkLimit, EndsAPipelineThatWorksForever) {
  const rlim_t before = work_limit();
  {
    const WorkLimit limit(1);
    EXPECT_LT(work_limit(), before);
    expect_output(run("yes | awk '/never/'; echo over", 100), "over\n");
  }
  EXPECT_EQ(work_limit(), before);
}

void (*signal_handler())(int) {
  struct sigaction action = {};
  sigaction(SIGXCPU, nullptr, &action);
  return action.sa_handler;
}

// It may already have used more time than its tools are allowed.
TEST(WorkLimit, DoesNotEndThisProgramItself) {
  {
    const WorkLimit limit(1);
    std::raise(SIGXCPU);
    expect_output(run("echo on", 100), "on\n");
  }
  EXPECT_EQ(signal_handler(), SIG_DFL);
}

TEST(WorkLimit, KeepsALowerLimit) {
  const WorkLimit low(10);
  const rlim_t before = work_limit();
  const WorkLimit high(100);
  EXPECT_EQ(work_limit(), before);
}

// A run of a series: the length and the output; "none" when the tool is not run.
std::string run_in(CommandSeries& series, const char* command) {
  uint32_t length = 7;
  const Text text = series.run(command, &length);
  return text ? std::to_string(length) + " " + text.get() : length == 0 ? "none" : "none, but a length";
}

TEST(CommandSeries, LimitsEachOutputAndAllTogether) {
  testing::internal::CaptureStderr();
  CommandSeries series(4, {6, 10});
  EXPECT_EQ(run_in(series, "printf 12345678"), "6 123456");
  EXPECT_FALSE(series.used_up());
  EXPECT_EQ(run_in(series, "printf abcdefgh"), "4 abcd");
  EXPECT_TRUE(series.used_up());
  EXPECT_EQ(run_in(series, "printf more"), "none");
  EXPECT_EQ(run_in(series, "printf more"), "none");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Output cut off after 6 bytes: printf 12345678\n"
            "Output cut off after 4 bytes: printf abcdefgh\n"
            "No longer run: printf more\n");
}

TEST(CommandSeries, LimitsTheRuns) {
  testing::internal::CaptureStderr();
  CommandSeries series(100, {100, 100, 2});
  EXPECT_EQ(run_in(series, "true"), "0 ");
  EXPECT_EQ(run_in(series, "echo x"), "2 x\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(run_in(series, "echo y"), "none");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "No longer run: echo y\n");
}

TEST(CommandSeries, EndsAfterSoManySilences) {
  const LongestSilence silence(milliseconds(100));
  testing::internal::CaptureStderr();
  CommandSeries series(100, {100, 100, 100, 2});
  EXPECT_EQ(run_in(series, "printf a; sleep 1000"), "1 a");
  EXPECT_TRUE(series.gave_up());
  EXPECT_FALSE(series.used_up());
  EXPECT_EQ(run_in(series, "printf b"), "1 b");
  EXPECT_FALSE(series.gave_up());
  EXPECT_EQ(run_in(series, "sleep 1000"), "0 ");
  EXPECT_TRUE(series.used_up());
  EXPECT_EQ(run_in(series, "printf c"), "none");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Gave up waiting for: printf a; sleep 1000\nGave up waiting for: sleep 1000\n"
            "No longer run: printf c\n");
}

// Without a free descriptor there is no pipe. Run in a child of the test, which ends with the verdict.
[[noreturn]] void run_without_descriptors() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_NOFILE, &none);
  uint32_t length = 7;
  const Text text = run_command("echo x", &length, 100);
  std::_Exit(!text && length == 0 ? 0 : 1);
}

TEST(RunCommand, ReturnsNullAndNoLengthWhenNoShellCanBeStarted) {
  EXPECT_EXIT(run_without_descriptors(), testing::ExitedWithCode(0), "");
}

// The descriptors listed by the system's own directory of them, which is there on Linux and on a Mac.
int open_descriptors() {
  int count = 0;
  DIR* directory = opendir("/dev/fd");
  if (!directory) return -1;
  while (readdir(directory)) ++count;
  closedir(directory);
  return count;
}

TEST(RunCommand, LeaksNoDescriptorAndNoProcess) {
  const int before = open_descriptors();
  ASSERT_GT(before, 0);
  testing::internal::CaptureStderr();
  for (int i = 0; i < 1000; ++i) {
    // Every third ends by itself, is cut off, or fails.
    run(i % 3 == 0 ? "echo x" : i % 3 == 1 ? "printf 0123456789" : "exit 1", 4, 8);
  }
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(open_descriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

}  // namespace
