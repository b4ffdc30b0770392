// A file that appears whole or not at all.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace inv {

// Writes beside its target, under an unpredictable name, and replaces it at the end; what is not committed is
// removed. A new file is readable by its owner only; a replaced one keeps its mode. A link is kept, and the
// file that it leads to is replaced. "-" is standard output. Anything else, such as a device or a pipe, is
// written to directly.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // Null, with the reason in errno, if it cannot be created.
  std::FILE* stream() { return stream_; }
  // Closes the file and puts it in place. False, with the reason in errno, if any of it could not be written.
  [[nodiscard]] bool commit();

 private:
  std::string path_;
  std::string temporary_path_;  // empty when the target itself is written to
  std::FILE* stream_;
};

// Whether an output would replace an input: the same regular file, whatever paths or links lead to it; "-" is
// standard output and standard input.
bool is_same_file(const std::string& output, const std::string& input);

// Writes a whole file this way. False, with the reason in errno, if it could not be written.
[[nodiscard]] bool write_file(const std::string& path, std::string_view content);

}  // namespace inv
