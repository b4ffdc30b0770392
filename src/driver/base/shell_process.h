// A shell that runs one command line, with its standard output in a pipe.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <vector>

// Where the standard error of a tool goes: to this program's, or nowhere.
enum class ToolErrors { kept, dropped };

// The shell and everything it starts form a separate process group, so that they can be ended together. They
// have nothing to read, and inherit only the standard descriptors.
class ShellProcess {
 public:
  // The arguments are those after "-c": the command line, and its "$0". The environment is as for execve.
  ShellProcess(const std::vector<const char*>& arguments, char* const* environment, ToolErrors errors);
  ShellProcess(const ShellProcess&) = delete;
  ShellProcess& operator=(const ShellProcess&) = delete;
  // Kills what has not ended. What even that does not end, such as a tool stuck in the kernel, is abandoned.
  ~ShellProcess();

  // False when there is no shell, or no descriptor is left for the pipe: nothing else may be called then.
  bool started() const { return id_ > 0; }

  // True when there are bytes to read or the output has ended, false when neither happens within this time.
  bool wait_for_output(std::chrono::milliseconds longest) const;
  // Reads what has arrived, at most this many bytes; 0 means the end of the output.
  size_t read(char* bytes, size_t room) const;
  // True when the shell has ended within this time.
  bool wait_for_end(std::chrono::milliseconds longest);
  // How it ended, as waitpid gives it; 0 until then.
  int status() const { return status_; }

 private:
  bool start(const std::vector<const char*>& arguments, char* const* environment, ToolErrors errors,
             int output);
  bool has_ended();

  pid_t id_ = 0;
  int status_ = 0;
  int output_ = -1;
};

// Sends a signal to the processes of the command that is running, if one is; may be called by a signal
// handler.
void signal_running_command(int signal_number);
