#include "driver/base/command.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace {

// A growing text; there is always room for one more chunk's worth after one doubling, since no read delivers
// more than a chunk.
class Capture {
 public:
  explicit Capture(uint32_t chunk) : capacity_(chunk), text_(new char[chunk]) {}

  uint32_t length() const { return length_; }

  void append(const char* bytes, uint32_t count) {
    if (count > capacity_ - length_) grow(2 * capacity_);
    std::memcpy(text_.get() + length_, bytes, count);
    length_ += count;
  }

  Text finish() {
    if (length_ == capacity_) grow(length_ + 1);
    text_[length_] = '\0';
    return std::move(text_);
  }

 private:
  void grow(uint32_t capacity) {
    Text larger(new char[capacity]);
    std::memcpy(larger.get(), text_.get(), length_);
    text_ = std::move(larger);
    capacity_ = capacity;
  }

  uint32_t capacity_;
  uint32_t length_ = 0;
  Text text_;
};

}  // namespace

Text run_command(const char* command_line, uint32_t* length, uint32_t chunk, uint32_t limit) {
  *length = 0;
  std::FILE* pipe = popen(command_line, "r");
  if (!pipe) return nullptr;
  Capture capture(chunk);
  const Text scratch(new char[chunk]);
  for (;;) {
    const uint32_t count = static_cast<uint32_t>(std::fread(scratch.get(), 1, chunk, pipe));
    const uint32_t room = limit - capture.length();
    if (count > room) {
      capture.append(scratch.get(), room);
      std::fprintf(stderr, "Output cut after %u bytes: %s\n", limit, command_line);
      break;
    }
    capture.append(scratch.get(), count);
    // A short read is the end of the output.
    if (count < chunk) break;
  }
  *length = capture.length();
  // The tool may have failed; what it said counts all the same.
  pclose(pipe);
  return capture.finish();
}

// The limit is this program's own as well, which new processes take over. Hence it handles the signal that
// comes beyond the limit; its handler is what they do not take over.
WorkLimit::WorkLimit(unsigned seconds) : handler_before_(std::signal(SIGXCPU, [](int) {})) {
  getrlimit(RLIMIT_CPU, &before_);
  rlimit limit = before_;
  limit.rlim_cur = std::min<rlim_t>(before_.rlim_cur, seconds);
  setrlimit(RLIMIT_CPU, &limit);
}

WorkLimit::~WorkLimit() {
  setrlimit(RLIMIT_CPU, &before_);
  std::signal(SIGXCPU, handler_before_);
}

Text CommandSeries::run(const char* command_line, uint32_t* length) {
  *length = 0;
  if (used_up()) {
    if (!ended_) std::fprintf(stderr, "Not run any more: %s\n", command_line);
    ended_ = true;
    return nullptr;
  }
  --left_.runs;
  Text output = run_command(command_line, length, chunk_, std::min(left_.one_output, left_.all_outputs));
  left_.all_outputs -= *length;
  return output;
}
