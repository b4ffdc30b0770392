#include "profiler/property_list.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "driver/base/run_journal.h"
#include "plist/nesting.h"
#include "profiler/salvage.h"

namespace {

// CoreFoundation ignores whatever follows the first end of a list, or of an array outside of any list.
bool is_one_list(std::string_view text) {
  const size_t end = text.find("</plist");
  return end != text.npos && text.find_first_not_of("> \t\r\n", end + 7) == text.npos &&
         text.find("<plist") < text.find("<array");
}

// In the document each piece ends at its first NUL, and a NUL hides a name.
bool holds_nul(const ProfilerOutput& output) {
  return std::string_view(output.text.get(), output.length).find('\0') != std::string_view::npos;
}

CFRef<CFArrayRef> parse(const char* text, size_t length) {
  const std::string_view list(text, length);
  // Some versions of CoreFoundation recurse into whatever they are given, until the stack ends.
  if (list.empty() || !is_one_list(list) || plist::nested_too_deeply(list)) return CFRef<CFArrayRef>();
  // The bytes outlive the parsing, and everything parsed from them is copied.
  const CFRef<CFDataRef> data(CFDataCreateWithBytesNoCopy(nullptr, reinterpret_cast<const UInt8*>(text),
                                                          static_cast<CFIndex>(length), kCFAllocatorNull));
  CFStringRef error_text = nullptr;
  // Deprecated, but kept: what it accepts and refuses has been measured on many releases.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  const CFRef<CFPropertyListRef> property_list(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, &error_text));
#pragma GCC diagnostic pop
  const CFRef<CFStringRef> error(error_text);
  if (!property_list || CFGetTypeID(property_list.get()) != CFArrayGetTypeID()) return CFRef<CFArrayRef>();
  return CFRef<CFArrayRef>(static_cast<CFArrayRef>(CFRetain(property_list.get())));
}

CFRef<CFArrayRef> parse(const ProfilerOutput& output) { return parse(output.text.get(), output.length); }

void report_unreadable(const ProfilerOutput& output) {
  if (output.length == 0) return;
  const char* separator = output.data_type ? ": " : "";
  const char* name = output.data_type ? output.data_type : "";
  std::fprintf(stderr, "Unreadable output from the system profiler%s%s\n", separator, name);
}

// The lists of all outputs as one.
CFRef<CFArrayRef> parse_one_by_one(const std::vector<ProfilerOutput>& outputs) {
  std::vector<CFRef<CFArrayRef>> lists;
  std::vector<const void*> elements;
  for (const ProfilerOutput& output : outputs) {
    CFRef<CFArrayRef> list = parse_profiler_output(output);
    const CFIndex count = list ? CFArrayGetCount(list.get()) : 0;
    for (CFIndex i = 0; i < count; ++i) elements.push_back(CFArrayGetValueAtIndex(list.get(), i));
    lists.push_back(std::move(list));
  }
  return CFRef<CFArrayRef>(
      CFArrayCreate(nullptr, elements.data(), static_cast<CFIndex>(elements.size()), &kCFTypeArrayCallBacks));
}

}  // namespace

CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document) {
  if (std::none_of(document.outputs.begin(), document.outputs.end(), holds_nul)) {
    if (CFRef<CFArrayRef> list = parse(document.text.get(), document.length)) return list;
  }
  return parse_one_by_one(document.outputs);
}

CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output) {
  if (!holds_nul(output)) {
    if (CFRef<CFArrayRef> list = parse(output)) return list;
  }
  CFRef<CFArrayRef> list = parse(salvage_output(output));
  if (list) {
    enter_salvage(profiler_command(output.data_type).get());
  } else {
    report_unreadable(output);
  }
  return list;
}
