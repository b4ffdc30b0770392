#include "inv/base/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace inv {
namespace {

// Reads a whole stream, or one byte more than the limit if it is longer.
bool read_stream(std::FILE* stream, uint64_t limit, std::string& bytes) {
  constexpr size_t kPiece = 1 << 16;
  size_t length = 0;
  do {
    bytes.resize(std::min<uint64_t>(length < kPiece ? kPiece : length * 2, limit + 1));
    length += std::fread(&bytes[length], 1, bytes.size() - length, stream);
  } while (length == bytes.size() && length <= limit);
  bytes.resize(length);
  return std::ferror(stream) == 0;
}

}  // namespace

std::optional<std::string> read_file(const std::string& path, uint64_t limit, std::string* error) {
  const bool is_input = path == "-";
  std::FILE* stream = is_input ? stdin : std::fopen(path.c_str(), "rb");
  std::string bytes;
  const bool read = stream && read_stream(stream, limit, bytes);
  if (!read) *error = std::string("cannot be read: ") + std::strerror(errno);
  if (stream && !is_input) std::fclose(stream);
  if (!read) return std::nullopt;
  if (bytes.size() > limit) {
    *error = "is larger than " + std::to_string(limit) + " bytes";
    return std::nullopt;
  }
  return bytes;
}

}  // namespace inv
