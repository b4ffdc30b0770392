#include "inv/output_file.h"

#include <unistd.h>

namespace inv {

OutputFile::OutputFile(const std::string& path) : path_(path) {
  if (path.empty() || path == "-") {
    stream_ = stdout;
    return;
  }
  temporary_path_ = path + "." + std::to_string(getpid()) + ".part";
  stream_ = std::fopen(temporary_path_.c_str(), "wb");
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
  const bool placed = written && closed && std::rename(temporary_path_.c_str(), path_.c_str()) == 0;
  if (!placed) std::remove(temporary_path_.c_str());
  return placed;
}

}  // namespace inv
