#include "platform/corefoundation/object.h"

#include <vector>

#include "platform/corefoundation/container.h"
#include "platform/corefoundation/locale.h"
#include "platform/corefoundation/region.h"
#include "platform/corefoundation/string.h"
#include "platform/corefoundation/value.h"

struct CFAllocatorObject {};

namespace cf {
namespace {

const CFAllocatorObject kMallocAllocator, kNullAllocator;

bool is_container(const Object* any) { return any->kind == Kind::array || any->kind == Kind::dictionary; }

template <typename T>
void free_as(const Object* dead) {
  T* const typed = const_cast<T*>(static_cast<const T*>(dead));
  typed->~T();
  ::operator delete(typed);
}

// Frees only the object, not what a container holds.
void free_object(const Object* dead) {
  switch (dead->kind) {
    case Kind::string:
      return free_as<CFStringObject>(dead);
    case Kind::boolean:
      return;
    case Kind::number:
      return free_as<CFNumberObject>(dead);
    case Kind::date:
      return free_as<CFDateObject>(dead);
    case Kind::data:
      return free_as<CFDataObject>(dead);
    case Kind::array:
      return free_as<CFArrayObject>(dead);
    case Kind::dictionary:
      return free_as<CFDictionaryObject>(dead);
    case Kind::locale:
      return free_as<CFLocaleObject>(dead);
    case Kind::date_formatter:
      return free_as<CFDateFormatterObject>(dead);
    case Kind::calendar:
      return free_as<CFCalendarObject>(dead);
    case Kind::time_zone:
      return free_as<CFTimeZoneObject>(dead);
  }
}

// True when it was the last one.
bool drop_reference(const Object* any) { return any->references != kImmortal && --any->references == 0; }

// A list of containers instead of recursion: structures may be deeper than the stack.
void free_containers(const Object* dead) {
  std::vector<const Object*> dead_containers{dead};
  while (!dead_containers.empty()) {
    const Object* const container = dead_containers.back();
    dead_containers.pop_back();
    const Elements elements = elements_of(container);
    for (size_t i = 0; i < elements.count; ++i) {
      const Object* const element = object(elements.first[i]);
      if (!drop_reference(element)) continue;
      is_container(element) ? dead_containers.push_back(element) : free_object(element);
    }
    free_object(container);
  }
}

struct Comparison {
  const Object* left;
  const Object* right;
};

// Whether the objects themselves are equal; what a container holds is left to be compared.
bool equal_shallow(const Object* left, const Object* right, std::vector<Comparison>& elements) {
  if (left == right) return true;
  if (left->kind != right->kind) return false;
  switch (left->kind) {
    case Kind::string:
      return text_of(static_cast<CFStringRef>(left)) == text_of(static_cast<CFStringRef>(right));
    case Kind::number:
      return equal_numbers(*static_cast<CFNumberRef>(left), *static_cast<CFNumberRef>(right));
    case Kind::date:
      return static_cast<CFDateRef>(left)->time == static_cast<CFDateRef>(right)->time;
    case Kind::data:
      return bytes_of(static_cast<CFDataRef>(left)) == bytes_of(static_cast<CFDataRef>(right));
    case Kind::array: {
      const Elements ours = elements_of(left), theirs = elements_of(right);
      if (ours.count != theirs.count) return false;
      for (size_t i = 0; i < ours.count; ++i)
        elements.push_back({object(ours.first[i]), object(theirs.first[i])});
      return true;
    }
    case Kind::dictionary: {
      const CFDictionaryRef ours = static_cast<CFDictionaryRef>(left),
                            theirs = static_cast<CFDictionaryRef>(right);
      if (ours->count != theirs->count) return false;
      for (size_t i = 0; i < ours->count; ++i) {
        const void* value;
        if (!CFDictionaryGetValueIfPresent(theirs, keys_of(ours)[i], &value)) return false;
        elements.push_back({object(values_of(ours)[i]), object(value)});
      }
      return true;
    }
    default:
      return false;
  }
}

}  // namespace
}  // namespace cf

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFAllocatorRef kCFAllocatorMalloc = &cf::kMallocAllocator;
const CFAllocatorRef kCFAllocatorNull = &cf::kNullAllocator;

CFTypeID CFGetTypeID(CFTypeRef object) { return static_cast<CFTypeID>(cf::object(object)->kind); }

CFTypeRef CFRetain(CFTypeRef object) {
  cf::retain(object);
  return object;
}

void CFRelease(CFTypeRef object) {
  const cf::Object* const released = cf::object(object);
  if (!cf::drop_reference(released)) return;
  cf::is_container(released) ? cf::free_containers(released) : cf::free_object(released);
}

CFIndex CFGetRetainCount(CFTypeRef object) { return static_cast<CFIndex>(cf::object(object)->references); }

Boolean CFEqual(CFTypeRef left, CFTypeRef right) {
  std::vector<cf::Comparison> pending{{cf::object(left), cf::object(right)}};
  while (!pending.empty()) {
    const cf::Comparison next = pending.back();
    pending.pop_back();
    if (!cf::equal_shallow(next.left, next.right, pending)) return false;
  }
  return true;
}
