// The contents of a property list, element by element in the order of the document.
#pragma once

#include <cstdint>
#include <string_view>

namespace plist {

// The text of a key or string with its entities and CDATA sections resolved: valid UTF-8, which may hold NULs
// and other control bytes.
struct Characters {
  std::string_view bytes;
  bool ascii;
};

struct Integer {
  int64_t value;
  bool above_int64;  // 2^63 up to 2^64 - 1: value then holds the same 64 bits
};

// The listener's side: one function per event, each called with `listener` first. Every begin is followed by
// its end, each value in a dictionary by its key's event before it. Views are valid during the call only.
// `source` is the element's text, such that the same element with this text gives the same value again.
struct Events {
  void* listener;
  void (*begin_array)(void*);
  void (*end_array)(void*);
  void (*begin_dictionary)(void*);
  void (*end_dictionary)(void*);
  void (*key)(void*, Characters text);
  void (*string)(void*, Characters text);
  void (*integer)(void*, Integer value, std::string_view source);
  void (*real)(void*, double value, std::string_view source);
  void (*boolean)(void*, bool value);
  void (*date)(void*, double seconds_since_2001, std::string_view source);
  void (*data)(void*, std::string_view source);  // see base64.h
};

// Events that go to the listener's members of the same names.
template <typename Listener>
Events events_for(Listener& listener) {
  return {
      &listener,
      [](void* self) { static_cast<Listener*>(self)->begin_array(); },
      [](void* self) { static_cast<Listener*>(self)->end_array(); },
      [](void* self) { static_cast<Listener*>(self)->begin_dictionary(); },
      [](void* self) { static_cast<Listener*>(self)->end_dictionary(); },
      [](void* self, Characters text) { static_cast<Listener*>(self)->key(text); },
      [](void* self, Characters text) { static_cast<Listener*>(self)->string(text); },
      [](void* self, Integer value, std::string_view source) {
        static_cast<Listener*>(self)->integer(value, source);
      },
      [](void* self, double value, std::string_view source) {
        static_cast<Listener*>(self)->real(value, source);
      },
      [](void* self, bool value) { static_cast<Listener*>(self)->boolean(value); },
      [](void* self, double seconds, std::string_view source) {
        static_cast<Listener*>(self)->date(seconds, source);
      },
      [](void* self, std::string_view source) { static_cast<Listener*>(self)->data(source); },
  };
}

}  // namespace plist
