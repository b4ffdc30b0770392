// What every object of the stand-in begins with, and how objects are created and released.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace cf {

enum class Kind : uint8_t {
  string = 1,
  boolean,
  number,
  date,
  data,
  array,
  dictionary,
  locale,
  date_formatter,
  calendar,
  time_zone
};

constexpr uint32_t kImmortal = 0;  // the reference count of what lives as long as the program

// Derived objects are plain data after this, so that an object and its bytes or elements are one allocation.
struct Object {
  constexpr explicit Object(Kind its_kind, uint32_t count = 1) : references(count), kind(its_kind) {}

  mutable uint32_t references;
  const Kind kind;
};

inline const Object* object(CFTypeRef reference) { return static_cast<const Object*>(reference); }

// A new object with one reference and room for this many bytes after it.
template <typename T, typename... Arguments>
T* create_with_tail(size_t tail_size, Arguments&&... arguments) {
  return new (::operator new(sizeof(T) + tail_size)) T(std::forward<Arguments>(arguments)...);
}
template <typename T, typename... Arguments>
T* create(Arguments&&... arguments) {
  return create_with_tail<T>(0, std::forward<Arguments>(arguments)...);
}

// What follows an object.
template <typename Element, typename T>
const Element* tail_of(const T* object) {
  return reinterpret_cast<const Element*>(object + 1);
}
template <typename Element, typename T>
Element* tail_of(T* object) {
  return reinterpret_cast<Element*>(object + 1);
}

inline void retain(CFTypeRef reference) {
  if (object(reference)->references != kImmortal) ++object(reference)->references;
}

}  // namespace cf
