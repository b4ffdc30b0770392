#include <SystemConfiguration/SystemConfiguration.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/corefoundation/string.h"

extern char** environ;

namespace {

constexpr size_t kLongestName = 1024;

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(const Descriptor&) = delete;
  ~Descriptor() { close(); }
  int get() const { return descriptor_; }
  void close() {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
  }

 private:
  int descriptor_;
};

// Starts the tool with its output in the descriptor; the child shares this program's memory until it runs the
// tool.
bool start_tool(int output, pid_t* child) {
  char tool[] = "scutil", option[] = "--get", name[] = "ComputerName";
  char* const arguments[] = {tool, option, name, nullptr};
  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0) return false;
  const bool started =
      posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
      posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO) == 0 &&
      posix_spawnp(child, tool, &actions, nullptr, arguments, environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  return started;
}

std::string read_start(int input) {
  std::string text(kLongestName, '\0');
  size_t length = 0;
  while (length < text.size()) {
    const ssize_t got = read(input, &text[length], text.size() - length);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    length += static_cast<size_t>(got);
  }
  text.resize(length);
  return text;
}

// The first line that the tool prints; empty when there is no such tool, or no name.
std::string tool_name() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return std::string();
  Descriptor output(ends[0]), input(ends[1]);
  pid_t child;
  if (!start_tool(input.get(), &child)) return std::string();
  input.close();
  const std::string text = read_start(output.get());
  output.close();
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return text.substr(0, text.find('\n'));
}

std::string host_name() {
  char name[256] = "";
  gethostname(name, sizeof name - 1);
  return name;
}

}  // namespace

CFStringRef SCDynamicStoreCopyComputerName(SCDynamicStoreRef, CFStringEncoding* encoding) {
  if (encoding) *encoding = kCFStringEncodingUTF8;
  const std::string name = tool_name();
  return cf::create_repaired_string(name.empty() ? host_name() : name);
}
