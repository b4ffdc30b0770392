// The fields of keys and signatures in SSH's format: four-byte big-endian numbers, and strings preceded by
// their length.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace inv {

// Takes fields off the front of bytes, which must outlive what it returns. After a truncated field there are
// no others, so if the last one is there, all are.
class WireReader {
 public:
  explicit WireReader(std::string_view bytes) : rest_(bytes) {}

  // This many bytes; std::nullopt if there are fewer.
  std::optional<std::string_view> take(size_t length);
  std::optional<uint32_t> take_number();
  std::optional<std::string_view> take_string();

  bool at_end() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

// A string preceded by its length, which must be less than 4 GiB.
std::string wire_string(std::string_view text);

}  // namespace inv
