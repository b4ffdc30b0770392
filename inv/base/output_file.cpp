#include "inv/base/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace inv {
namespace {

// The file that a path leads to through links; the path itself when there is none yet.
std::string resolve_links(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) ? resolved : path;
}

// A device, for example. (Or a folder, which then cannot be opened.)
bool is_not_a_file(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path) {
  if (path == "-") {
    stream_ = stdout;
  } else if (is_not_a_file(path)) {
    stream_ = std::fopen(path.c_str(), "wb");
  } else {
    path_ = resolve_links(path);
    temporary_path_ = path_ + "." + std::to_string(getpid()) + ".part";
    stream_ = std::fopen(temporary_path_.c_str(), "wb");
  }
}

OutputFile::~OutputFile() {
  if (!stream_ || stream_ == stdout) return;
  std::fclose(stream_);
  std::remove(temporary_path_.c_str());
}

bool OutputFile::commit() {
  if (!stream_) return false;
  const bool written = std::fflush(stream_) == 0 && std::ferror(stream_) == 0;
  if (stream_ == stdout) return written;
  const bool closed = std::fclose(stream_) == 0;
  stream_ = nullptr;
  if (temporary_path_.empty()) return written && closed;
  const bool placed = written && closed && std::rename(temporary_path_.c_str(), path_.c_str()) == 0;
  const int reason = errno;
  if (!placed) std::remove(temporary_path_.c_str());
  errno = reason;
  return placed;
}

bool write_file(const std::string& path, std::string_view content) {
  OutputFile output(path);
  return output.stream() &&
         std::fwrite(content.data(), 1, content.size(), output.stream()) == content.size() && output.commit();
}

}  // namespace inv
