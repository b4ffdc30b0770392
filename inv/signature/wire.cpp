#include "inv/signature/wire.h"

#include "inv/base/byte_reader.h"

namespace inv {

std::optional<std::string_view> WireReader::take(size_t length) {
  if (length > rest_.size()) {
    rest_ = {};
    return std::nullopt;
  }
  const std::string_view taken = rest_.substr(0, length);
  rest_.remove_prefix(length);
  return taken;
}

std::optional<uint32_t> WireReader::take_number() {
  const std::optional<std::string_view> bytes = take(sizeof(uint32_t));
  if (!bytes) return std::nullopt;
  return static_cast<uint32_t>(read_number(*bytes, true));
}

std::optional<std::string_view> WireReader::take_string() {
  const std::optional<uint32_t> length = take_number();
  return length ? take(*length) : std::nullopt;
}

std::string wire_string(std::string_view text) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(text.size() >> shift & 0xFF);
  return bytes.append(text);
}

}  // namespace inv
