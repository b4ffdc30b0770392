// Secrets in any text: a command line, or the name and the value of a variable with a line end between.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "inv/secrets/secret_text.h"

namespace {

// Parts are in order and do not touch, and a text in which nothing is found does not change.
void check(std::string_view text, const std::vector<inv::TextPart>& secrets) {
  size_t end = 0;
  for (const inv::TextPart& part : secrets) {
    if (part.length == 0 || part.offset < end || part.length > text.size() - part.offset) std::abort();
    end = part.offset + part.length;
  }
  if (secrets.empty() != (inv::masked(text, secrets) == text)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  check(text, inv::secrets_in_line(text));
  const size_t line_end = text.find('\n');
  if (line_end == text.npos) return 0;
  const std::string_view value = text.substr(line_end + 1);
  check(value, inv::secrets_in_variable(text.substr(0, line_end), value));
  return 0;
}
