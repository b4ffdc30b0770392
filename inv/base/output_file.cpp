#include "inv/base/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>

namespace inv {
namespace {

// The file that a path leads to through links; the path itself if it does not exist yet.
std::string resolve_links(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) ? resolved : path;
}

// The status of the file at a path, or of the standard stream; std::nullopt if there is none.
std::optional<struct stat> status_of(const std::string& path, int standard_stream) {
  struct stat status;
  const bool known = (path == "-" ? fstat(standard_stream, &status) : stat(path.c_str(), &status)) == 0;
  return known ? std::make_optional(status) : std::nullopt;
}

// A new file reveals whose machine it describes, so only its owner may read it; a replaced file keeps its
// mode.
mode_t mode_for(const std::optional<struct stat>& replaced) {
  constexpr mode_t kPermissions = 0777;
  return replaced ? replaced->st_mode & kPermissions : S_IRUSR | S_IWUSR;
}

// Creates a file beside the target, under a name where nobody can have planted a link, and fills in the path.
std::FILE* open_beside(std::string& path, mode_t mode) {
  constexpr char kSuffix[] = ".part";
  path += std::string(".XXXXXX") + kSuffix;
  const int descriptor = mkstemps(path.data(), sizeof kSuffix - 1);
  if (descriptor < 0) return nullptr;
  std::FILE* stream = fchmod(descriptor, mode) == 0 ? fdopen(descriptor, "wb") : nullptr;
  if (stream) return stream;
  const int reason = errno;
  close(descriptor);
  std::remove(path.c_str());
  errno = reason;
  return nullptr;
}

}  // namespace

bool is_same_file(const std::string& output, const std::string& input) {
  const std::optional<struct stat> one = status_of(output, STDOUT_FILENO);
  const std::optional<struct stat> other = status_of(input, STDIN_FILENO);
  return one && other && S_ISREG(one->st_mode) && one->st_dev == other->st_dev &&
         one->st_ino == other->st_ino;
}

OutputFile::OutputFile(const std::string& path) : path_(path) {
  const std::optional<struct stat> there = status_of(path, STDOUT_FILENO);
  if (path == "-") {
    stream_ = stdout;
  } else if (there && !S_ISREG(there->st_mode)) {
    // For example a device. (Or a folder, which cannot be opened.)
    stream_ = std::fopen(path.c_str(), "wb");
  } else {
    path_ = temporary_path_ = resolve_links(path);
    stream_ = open_beside(temporary_path_, mode_for(there));
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
