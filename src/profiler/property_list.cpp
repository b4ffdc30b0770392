#include "profiler/property_list.h"

namespace {

// The bytes outlive the parsing, and everything parsed from them is copied.
CFRef<CFArrayRef> parse(const char* text, uint32_t length) {
  if (!text || length == 0) return CFRef<CFArrayRef>();
  const CFRef<CFDataRef> data(CFDataCreateWithBytesNoCopy(nullptr, reinterpret_cast<const UInt8*>(text),
                                                          static_cast<CFIndex>(length), kCFAllocatorNull));
  CFRef<CFPropertyListRef> list(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, nullptr));
  if (!list || CFGetTypeID(list.get()) != CFArrayGetTypeID()) return CFRef<CFArrayRef>();
  return CFRef<CFArrayRef>(static_cast<CFArrayRef>(CFRetain(list.get())));
}

}  // namespace

CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document) {
  return parse(document.text.get(), document.length);
}

CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output) {
  return parse(output.text.get(), output.length);
}
