// The question at the prompt, and one scan; or an answer about the program itself.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>

#include "driver/base/console.h"
#include "driver/base/progress.h"
#include "driver/base/shell_process.h"
#include "driver/help.h"
#include "driver/options.h"
#include "driver/scan_driver.h"
#include "platform/heap.h"

namespace {

void send_to_null(std::FILE* stream, const char* mode) {
  // Without that device the stream is closed, and just as silent.
  [[maybe_unused]] const std::FILE* reopened = std::freopen("/dev/null", mode, stream);
}

// Standard output stays: the calling program reads the result there.
void silence_console() {
  send_to_null(stdin, "r");
  send_to_null(stderr, "w");
}

// A scan does not end because nobody reads what it prints: its result is the file. A handler that does
// nothing, since the tools would inherit an ignored signal, and it must end those that print forever.
void outlive_readers() {
  std::signal(SIGPIPE, [](int) {});
}

// The tools are not in the process group that the terminal signals.
void end_with_tools(int signal_number) {
  signal_running_command(signal_number);
  erase_progress();
  std::signal(signal_number, SIG_DFL);
  std::raise(signal_number);
}

void handle_ends() {
  for (const int signal_number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    // A signal that the caller ignores, as nohup does, stays ignored.
    if (std::signal(signal_number, end_with_tools) == SIG_IGN) std::signal(signal_number, SIG_IGN);
  }
}

enum class Answer { yes, no, incorrect };

Answer ask() {
  print_now("Velkaro scanner for MacOS X\nDo you want to start the scan of local computer?(y/n)\n");
  char word[128];
  if (std::scanf("%127s", word) != 1) return Answer::incorrect;
  if (std::strcmp(word, "y") == 0) return Answer::yes;
  return std::strcmp(word, "n") == 0 ? Answer::no : Answer::incorrect;
}

// True when the operator wants the scan; otherwise `status` is the exit status.
bool confirm(int& status) {
  switch (ask()) {
    case Answer::yes:
      print_now("Scan started...\n");
      return true;
    case Answer::no:
      print_now("Scan canceled.\n");
      status = 0;
      return false;
    case Answer::incorrect:
      break;
  }
  print_now("Incorrect input. Application terminated.\n");
  status = 1;
  return false;
}

}  // namespace

int main(int count, char** arguments) {
  prepare_heap();
  outlive_readers();
  handle_ends();
  const Options options = parse_options(count, arguments);
  if (answer_about_program(options)) return 0;
  if (!options.refusal.empty()) {
    std::fprintf(stderr, "velkaro-scanner: %s\n", options.refusal.c_str());
    return 1;
  }
  int status = 0;
  if (options.silent) {
    silence_console();
  } else if (!confirm(status)) {
    return status;
  }
  // A log says enough, and keeps what the tools complain about.
  show_progress(!options.silent && !options.log && isatty(STDERR_FILENO));
  ScanContext context;
  context.log_enabled = options.log ? 1 : 0;
  ScanDriver(context, options.silent, options.debug, options.ip.get(), options.login.get(),
             options.extended ? options.given.c_str() : nullptr, options.omitted);
  return 0;
}
