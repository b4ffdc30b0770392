#include "driver/base/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "platform/flush.h"

namespace {

// While this lives, a file that reaches the size that the user may write makes the write fail; otherwise the
// signal that the system sends then would end the program, with half a file left behind.
class FileSizeSignalIgnored {
 public:
  FileSizeSignalIgnored() : before_(std::signal(SIGXFSZ, SIG_IGN)) {}
  FileSizeSignalIgnored(const FileSizeSignalIgnored&) = delete;
  FileSizeSignalIgnored& operator=(const FileSizeSignalIgnored&) = delete;
  ~FileSizeSignalIgnored() { std::signal(SIGXFSZ, before_); }

 private:
  void (*before_)(int);
};

// The system may take a part at a time, such as what just fits on a disk that gets full.
bool write_all(int descriptor, const unsigned char* data, size_t length) {
  while (length > 0) {
    const ssize_t written = write(descriptor, data, length);
    if (written < 0) return false;
    data += written;
    length -= static_cast<size_t>(written);
  }
  return true;
}

}  // namespace

int create_new_file(const char* path) {
  return open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
}

bool write_new_file(const char* path, const unsigned char* data, size_t length) {
  const int descriptor = create_new_file(path);
  if (descriptor < 0) return false;
  const FileSizeSignalIgnored ignored;
  const bool written = write_all(descriptor, data, length) && flush_to_disk(descriptor);
  const bool closed = close(descriptor) == 0;
  if (written && closed) return true;
  unlink(path);
  return false;
}
