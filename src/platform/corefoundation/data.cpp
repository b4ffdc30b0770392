#include <cstring>

#include "platform/corefoundation/value.h"

namespace cf {

CFDataObject* create_data(size_t capacity) {
  CFDataObject* const data = create_with_tail<CFDataObject>(capacity, nullptr, capacity, false);
  data->bytes = tail_of<UInt8>(data);
  return data;
}

}  // namespace cf

CFTypeID CFDataGetTypeID() { return static_cast<CFTypeID>(cf::Kind::data); }

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
  CFDataObject* const data = cf::create_data(static_cast<size_t>(length));
  if (length > 0) std::memcpy(cf::tail_of<UInt8>(data), bytes, data->length);
  return data;
}

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef, const UInt8* bytes, CFIndex length,
                                      CFAllocatorRef bytes_deallocator) {
  return cf::create<CFDataObject>(bytes, static_cast<size_t>(length), bytes_deallocator != kCFAllocatorNull);
}

CFIndex CFDataGetLength(CFDataRef data) { return static_cast<CFIndex>(data->length); }

const UInt8* CFDataGetBytePtr(CFDataRef data) { return data->bytes; }
