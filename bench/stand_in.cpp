// What the Linux stand-in for CoreFoundation costs in a scan; a Mac has its own library for it: making the
// objects of the profiler's document, and formatting its dates. Prints the nanoseconds of processor time of
// each.
//
//     stand_in DOCUMENT
#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "driver/base/dates.h"
#include "platform/cf_ref.h"
#include "plist/scanner.h"

namespace {

long long nanoseconds() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

// Reads the list as the stand-in does, and makes only the dates that a scan formats: one like the date before
// it is not formatted again.
struct Dates {
  void begin_array() {}
  void end_array() {}
  void begin_dictionary() {}
  void end_dictionary() {}
  void key(plist::Characters) {}
  void string(plist::Characters) {}
  void integer(plist::Integer, std::string_view) {}
  void real(double, std::string_view) {}
  void boolean(bool) {}
  void data(std::string_view) {}
  void date(double time, std::string_view) {
    if (times.empty() || times.back() != time) times.push_back(time);
  }

  std::vector<double> times;
};

CFRef<CFPropertyListRef> parse(const std::string& document) {
  const CFRef<CFDataRef> data(
      CFDataCreateWithBytesNoCopy(nullptr, reinterpret_cast<const UInt8*>(document.data()),
                                  static_cast<CFIndex>(document.size()), kCFAllocatorNull));
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  return CFRef<CFPropertyListRef>(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, nullptr));
#pragma GCC diagnostic pop
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 64;
  std::ifstream file(arguments[1], std::ios::binary);
  const std::string document{std::istreambuf_iterator<char>(file), {}};

  long long start = nanoseconds();
  Dates dates;
  if (plist::scan(document, plist::events_for(dates)).error) return 1;
  const long long reading = nanoseconds() - start;

  start = nanoseconds();
  // Released at once, which is also the stand-in's work.
  const bool parsed = static_cast<bool>(parse(document));
  const long long objects = nanoseconds() - start - reading;

  start = nanoseconds();
  const DateFormatter formatter(DateForm::cim);
  for (const double time : dates.times) {
    formatter.format(CFRef<CFDateRef>(CFDateCreate(nullptr, time)).get());
  }
  std::printf("%lld %lld\n", objects, nanoseconds() - start);
  return parsed ? 0 : 1;
}
