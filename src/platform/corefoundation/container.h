// Arrays and dictionaries: how they are kept, and how the parser makes them.
#pragma once

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDictionary.h>

#include "platform/corefoundation/object.h"

// The elements follow the object.
struct CFArrayObject : cf::Object {
  explicit CFArrayObject(size_t its_count) : Object(cf::Kind::array), count(its_count) {}

  const size_t count;
};

// The object is followed by the keys, then the values, then, when there are many, the positions of the keys
// in their own order.
struct CFDictionaryObject : cf::Object {
  explicit CFDictionaryObject(size_t its_count) : Object(cf::Kind::dictionary), count(its_count) {}

  const size_t count;
};

namespace cf {

inline const void* const* keys_of(CFDictionaryRef dictionary) { return tail_of<const void*>(dictionary); }
inline const void* const* values_of(CFDictionaryRef dictionary) {
  return keys_of(dictionary) + dictionary->count;
}

struct Pair {
  const void* key;  // a string
  const void* value;
};

// Both take over the references they are given. Of equal keys the last value stays, at the place of the
// first.
CFArrayRef create_array(const void* const* elements, size_t count);
CFDictionaryRef create_dictionary(Pair* pairs, size_t count);

// The objects that a container holds a reference to, keys included; null for other objects.
struct Elements {
  const void* const* first;
  size_t count;
};
Elements elements_of(const Object* container);

}  // namespace cf
