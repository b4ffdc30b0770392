// CoreFoundation objects to and from what tests can compare.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/cf_ref.h"

inline CFRef<CFStringRef> string_of(const std::string& utf8) {
  return CFRef<CFStringRef>(CFStringCreateWithCString(nullptr, utf8.c_str(), kCFStringEncodingUTF8));
}

inline std::string bytes_of_string(CFStringRef string) {
  const CFRange all = CFRangeMake(0, CFStringGetLength(string));
  CFIndex size = 0;
  CFStringGetBytes(string, all, kCFStringEncodingUTF8, 0, false, nullptr, 0, &size);
  std::string bytes(static_cast<size_t>(size), '\0');
  CFStringGetBytes(string, all, kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8*>(bytes.data()), size,
                   &size);
  return bytes;
}

// The list's value; null when it is refused.
inline CFRef<CFPropertyListRef> parse_list(std::string_view list, CFRef<CFStringRef>* error = nullptr) {
  // In a buffer of just the size, so that the address sanitizer sees a byte too much being read.
  const std::vector<char> bytes(list.begin(), list.end());
  const CFRef<CFDataRef> data(
      CFDataCreateWithBytesNoCopy(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                                  static_cast<CFIndex>(bytes.size()), kCFAllocatorNull));
  CFStringRef message = nullptr;
  // Deprecated, and what the scanner calls.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  CFRef<CFPropertyListRef> tree(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, &message));
#pragma GCC diagnostic pop
  CFRef<CFStringRef> owned_message(message);
  if (error) *error = std::move(owned_message);
  return tree;
}
