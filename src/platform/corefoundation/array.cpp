#include <algorithm>

#include "platform/corefoundation/container.h"

namespace cf {

CFArrayRef create_array(const void* const* elements, size_t count) {
  CFArrayObject* const array = create_with_tail<CFArrayObject>(count * sizeof(void*), count);
  std::copy_n(elements, count, tail_of<const void*>(array));
  return array;
}

Elements elements_of(const Object* container) {
  if (container->kind == Kind::array) {
    const CFArrayRef array = static_cast<CFArrayRef>(container);
    return {tail_of<const void*>(array), array->count};
  }
  const CFDictionaryRef dictionary = static_cast<CFDictionaryRef>(container);
  return {keys_of(dictionary), 2 * dictionary->count};
}

}  // namespace cf

const CFArrayCallBacks kCFTypeArrayCallBacks = {0};

CFTypeID CFArrayGetTypeID() { return static_cast<CFTypeID>(cf::Kind::array); }

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const CFArrayCallBacks*) {
  std::for_each(values, values + count, cf::retain);
  return cf::create_array(values, static_cast<size_t>(count));
}

CFIndex CFArrayGetCount(CFArrayRef array) { return static_cast<CFIndex>(array->count); }

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return cf::elements_of(array).first[index];
}
