// An account's record as dscl prints it; and the same bytes as the name of a home folder on their way to
// dscl.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "collectors/users.h"

namespace {

// How the shell reads a text in double quotes; aborts where it would not end with the closing quote, or would
// run something.
std::string unquoted(const char* text) {
  std::string plain;
  if (*text++ != '"') std::abort();
  for (; *text != '"'; ++text) {
    if (std::strchr("$`", *text)) std::abort();
    if (*text == '\\' && !std::strchr("\"\\$`", *++text)) std::abort();
    plain += *text;
  }
  if (text[1] != '\0') std::abort();
  return plain;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  const std::optional<Account> account = parse_account(text);
  if (account && std::strchr(account->name.get(), '\n')) std::abort();

  constexpr char kCommand[] = "dscl . -read ";
  const Text command = account_command(text.c_str());
  if (std::strncmp(command.get(), kCommand, std::strlen(kCommand)) != 0) std::abort();
  if (unquoted(command.get() + std::strlen(kCommand)) != std::string("/users/") + text.c_str()) std::abort();
  return 0;
}
