// The layouts of the objects that hold one value.
#pragma once

#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFNumber.h>

#include <cstdlib>
#include <string_view>

#include "platform/corefoundation/object.h"

struct CFBooleanObject : cf::Object {
  constexpr explicit CFBooleanObject(bool its_value)
      : Object(cf::Kind::boolean, cf::kImmortal), value(its_value) {}

  const bool value;
};

struct CFNumberObject : cf::Object {
  CFNumberObject(CFNumberType its_type, int64_t value, bool is_above_int64 = false)
      : Object(cf::Kind::number),
        type(static_cast<uint8_t>(its_type)),
        above_int64(is_above_int64),
        integer(value) {}
  CFNumberObject(CFNumberType its_type, double value)
      : Object(cf::Kind::number), type(static_cast<uint8_t>(its_type)), above_int64(false), real(value) {}

  bool is_real() const { return type == kCFNumberFloat32Type || type == kCFNumberFloat64Type; }

  const uint8_t type;      // 1 to 6
  const bool above_int64;  // the integer is 2^63 or more: these are its 64 bits
  union {
    const int64_t integer;
    const double real;
  };
};

struct CFDateObject : cf::Object {
  explicit CFDateObject(CFAbsoluteTime its_time) : Object(cf::Kind::date), time(its_time) {}

  const CFAbsoluteTime time;
};

// The bytes follow the object, or are elsewhere.
struct CFDataObject : cf::Object {
  CFDataObject(const UInt8* its_bytes, size_t its_length, bool is_owner)
      : Object(cf::Kind::data), frees_bytes(is_owner), length(its_length), bytes(its_bytes) {}

  ~CFDataObject() {
    if (frees_bytes) std::free(const_cast<UInt8*>(bytes));
  }

  const bool frees_bytes;
  size_t length;
  const UInt8* bytes;
};

namespace cf {

inline std::string_view bytes_of(CFDataRef data) {
  return {reinterpret_cast<const char*>(data->bytes), data->length};
}

bool equal_numbers(const CFNumberObject& left, const CFNumberObject& right);

// A new data object followed by this many bytes, for the caller to fill (and, before anyone else sees it, to
// shorten).
CFDataObject* create_data(size_t capacity);

}  // namespace cf
