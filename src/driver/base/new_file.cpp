#include "driver/base/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "platform/flush.h"

namespace {

// While this lives, a write beyond the user's limit for file sizes fails; otherwise the system's signal would
// end the program and leave half a file.
class FileSizeSignalIgnored {
 public:
  FileSizeSignalIgnored() : before_(std::signal(SIGXFSZ, SIG_IGN)) {}
  FileSizeSignalIgnored(const FileSizeSignalIgnored&) = delete;
  FileSizeSignalIgnored& operator=(const FileSizeSignalIgnored&) = delete;
  ~FileSizeSignalIgnored() { std::signal(SIGXFSZ, before_); }

 private:
  void (*before_)(int);
};

// Flushes everything to the disk; closes the file in any case.
bool write_through(std::FILE* file, const unsigned char* data, size_t length) {
  const bool written =
      std::fwrite(data, 1, length, file) == length && std::fflush(file) == 0 && flush_to_disk(fileno(file));
  const bool closed = std::fclose(file) == 0;
  return written && closed;
}

}  // namespace

int create_new_file(const char* path) {
  return open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
}

bool write_new_file(const char* path, const unsigned char* data, size_t length) {
  const int descriptor = create_new_file(path);
  if (descriptor < 0) return false;
  const FileSizeSignalIgnored ignored;
  std::FILE* const file = fdopen(descriptor, "w");
  if (file && write_through(file, data, length)) return true;
  unlink(path);
  return false;
}
