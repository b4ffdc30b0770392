// The scanner of property lists and the parser on top of it: strict refuses or reads, lenient always reads,
// and both agree on a whole list.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/cf_ref.h"
#include "plist/nesting.h"
#include "plist/scanner.h"

namespace {

// Notes every event, and that they are balanced.
class Notes {
 public:
  void begin_array() { open('['); }
  void end_array() { close('[', ']'); }
  void begin_dictionary() { open('{'); }
  void end_dictionary() { close('{', '}'); }
  void key(plist::Characters text) { note('k', text.bytes); }
  void string(plist::Characters text) { note('s', text.bytes); }
  void integer(plist::Integer value, std::string_view) { note('i', std::to_string(value.value)); }
  void real(double value, std::string_view) { note('r', std::to_string(value)); }
  void boolean(bool value) { note('b', value ? "1" : "0"); }
  void date(double value, std::string_view) { note('d', std::to_string(value)); }
  void data(std::string_view source) { note('x', source); }

  bool balanced() const { return open_.empty(); }
  const std::string& text() const { return text_; }

 private:
  void open(char kind) {
    text_ += kind;
    open_ += kind;
  }
  void close(char opened, char kind) {
    if (open_.empty() || open_.back() != opened) std::abort();
    open_.pop_back();
    text_ += kind;
  }
  void note(char kind, std::string_view text) {
    text_ += kind;
    text_ += text;
    text_ += '\n';
  }

  std::string text_;
  std::string open_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string_view list(reinterpret_cast<const char*>(bytes), size);
  Notes lenient;
  plist::scan_leniently(list, plist::events_for(lenient));
  if (!lenient.balanced()) std::abort();

  Notes strict;
  const plist::ScanResult result = plist::scan(list, plist::events_for(strict));
  if (!result.error && !strict.balanced()) std::abort();
  if (!result.error && plist::nested_too_deeply(list.substr(0, result.offset))) std::abort();

  const CFRef<CFDataRef> data(
      CFDataCreateWithBytesNoCopy(nullptr, bytes, static_cast<CFIndex>(size), kCFAllocatorNull));
  CFStringRef error = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  const CFRef<CFPropertyListRef> parsed(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, &error));
#pragma GCC diagnostic pop
  if (error) CFRelease(error);
  return 0;
}
