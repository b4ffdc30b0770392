#include <chrono>

#include "platform/corefoundation/value.h"

const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  const std::chrono::duration<double> since_1970 = std::chrono::system_clock::now().time_since_epoch();
  return since_1970.count() - kCFAbsoluteTimeIntervalSince1970;
}

CFTypeID CFDateGetTypeID() { return static_cast<CFTypeID>(cf::Kind::date); }

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime time) { return cf::create<CFDateObject>(time); }

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) { return date->time; }
