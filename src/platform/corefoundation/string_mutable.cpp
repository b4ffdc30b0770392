#include <cstring>

#include "platform/cf_ref.h"
#include "platform/corefoundation/string.h"
#include "plist/utf8.h"

namespace {

// The string's own text, whose length must be counted again.
std::string& changeable_text(CFMutableStringRef string) {
  string->length = unknown_length;
  return static_cast<MutableString*>(string)->text;
}

void append(CFMutableStringRef string, std::string_view utf8) { changeable_text(string) += utf8; }

}  // namespace

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex) { return cf::create<MutableString>(""); }

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex, CFStringRef string) {
  return cf::create<MutableString>(cf::text_of(string));
}

void CFStringAppend(CFMutableStringRef string, CFStringRef appended) {
  append(string, cf::text_of(appended));
}

void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding) {
  append(string, plist::repair_utf8(text));
}

void CFStringReplace(CFMutableStringRef string, CFRange range, CFStringRef replacement) {
  const size_t from = cf::position_at(string, range.location).offset;
  const size_t to = cf::position_at(string, range.location + range.length).offset;
  changeable_text(string).replace(from, to - from, cf::text_of(replacement));
}

CFIndex CFStringFindAndReplace(CFMutableStringRef string, CFStringRef wanted, CFStringRef replacement,
                               CFRange range, CFStringCompareFlags) {
  const std::string_view pattern = cf::text_of(wanted);
  if (pattern.empty()) return 0;
  const size_t from = cf::position_at(string, range.location).offset;
  const size_t to = cf::position_at(string, range.location + range.length).offset;
  const std::string searched = static_cast<MutableString*>(string)->text.substr(from, to - from);

  std::string replaced;
  CFIndex replacements = 0;
  size_t at = 0;
  for (size_t found; (found = searched.find(pattern, at)) != searched.npos; at = found + pattern.size()) {
    replaced.append(searched, at, found - at).append(cf::text_of(replacement));
    ++replacements;
  }
  replaced.append(searched, at);
  changeable_text(string).replace(from, to - from, replaced);
  return replacements;
}
