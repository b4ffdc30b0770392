// A file that appears whole or not at all.
#pragma once

#include <cstdio>
#include <string>

namespace inv {

// Writes beside its target and takes its place at the end; what is not committed is removed. "-" and the
// empty path are standard output.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // None when it cannot be made.
  std::FILE* stream() { return stream_; }
  // Closes the file and puts it in place. False, with the reason in errno, when anything of it could not be
  // written.
  [[nodiscard]] bool commit();

 private:
  std::string path_;
  std::string temporary_path_;
  std::FILE* stream_;
};

}  // namespace inv
