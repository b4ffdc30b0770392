// The fields of keys and signatures, as SSH has them: numbers of four bytes, the most significant first, and
// strings after their length.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace inv {

// Takes fields off the front of bytes, which must outlive what it gives. After a field that is cut short
// there are no others: when the last one is there, all of them are.
class WireReader {
 public:
  explicit WireReader(std::string_view bytes) : rest_(bytes) {}

  // This many bytes; none when there are fewer.
  std::optional<std::string_view> take(size_t length);
  std::optional<uint32_t> take_number();
  std::optional<std::string_view> take_string();

  bool at_end() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

// A string after its length, which must be less than 4 GiB.
std::string wire_string(std::string_view text);

}  // namespace inv
