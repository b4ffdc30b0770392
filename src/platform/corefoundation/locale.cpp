#include "platform/corefoundation/locale.h"

#include <CoreFoundation/CFString.h>

#include <cstdlib>
#include <string_view>

#include "platform/corefoundation/string.h"

namespace {

// The name of the user's locale as the C library finds it, without encoding and modifier.
std::string_view environment_locale() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* const value = std::getenv(variable);
    if (!value || !*value) continue;
    const std::string_view name(value);
    return name.substr(0, name.find_first_of(".@"));
  }
  return "C";
}

}  // namespace

CFLocaleRef CFLocaleCopyCurrent() {
  const std::string_view name = environment_locale();
  const bool is_plain = name == "C" || name == "POSIX";
  return cf::create<CFLocaleObject>(cf::create_repaired_string(is_plain ? "en_US_POSIX" : name));
}

CFLocaleRef CFLocaleCreate(CFAllocatorRef, CFLocaleIdentifier identifier) {
  return cf::create<CFLocaleObject>(static_cast<CFStringRef>(CFRetain(identifier)));
}

CFLocaleIdentifier CFLocaleGetIdentifier(CFLocaleRef locale) { return locale->identifier; }
