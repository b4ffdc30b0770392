#include "profiler/property_list.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "plist/nesting.h"
#include "profiler/salvage.h"

namespace {

// CoreFoundation ignores whatever follows the first end of a list, or of an array outside of any list.
bool is_one_list(std::string_view text) {
  const size_t end = text.find("</plist");
  return end != text.npos && text.find_first_not_of("> \t\r\n", end + 7) == text.npos &&
         text.find("<plist") < text.find("<array");
}

// A document ends each piece at its first NUL, and a name is missed because of one.
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
  // Deprecated, and kept: what it accepts and refuses is measured on systems of many years.
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

CFRef<CFArrayRef> parse_spliced(const std::vector<ProfilerOutput>& outputs) {
  size_t length = 0;
  const Text document = splice_outputs(outputs, &length);
  return parse(document.get(), length);
}

void leave_out_unreadable(std::vector<ProfilerOutput>& outputs) {
  for (ProfilerOutput& output : outputs) {
    if (parse(output)) continue;
    std::fprintf(stderr, "Unreadable output of the system profiler: %s\n", output.data_type);
    output.text.reset();
    output.length = 0;
  }
}

}  // namespace

CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document) {
  if (std::none_of(document.outputs.begin(), document.outputs.end(), holds_nul)) {
    if (CFRef<CFArrayRef> list = parse(document.text.get(), document.length)) return list;
  }
  std::vector<ProfilerOutput> salvaged;
  for (const ProfilerOutput& output : document.outputs) salvaged.push_back(salvage_output(output));
  if (CFRef<CFArrayRef> list = parse_spliced(salvaged)) return list;
  leave_out_unreadable(salvaged);
  return parse_spliced(salvaged);
}

CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output) {
  if (!holds_nul(output)) {
    if (CFRef<CFArrayRef> list = parse(output)) return list;
  }
  return parse(salvage_output(output));
}
