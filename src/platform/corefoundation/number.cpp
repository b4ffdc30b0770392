#include <cmath>
#include <cstring>
#include <limits>

#include "platform/corefoundation/value.h"

namespace cf {
namespace {

const CFBooleanObject kTrueObject(true), kFalseObject(false);

constexpr double kTwoTo63 = 9223372036854775808.0;

// The fixed-size type for a type that is named after C's.
CFNumberType sized_type(CFNumberType type) {
  switch (type) {
    case kCFNumberCharType:
      return kCFNumberSInt8Type;
    case kCFNumberShortType:
      return kCFNumberSInt16Type;
    case kCFNumberIntType:
      return kCFNumberSInt32Type;
    case kCFNumberLongType:
    case kCFNumberLongLongType:
    case kCFNumberCFIndexType:
    case kCFNumberNSIntegerType:
      return kCFNumberSInt64Type;
    case kCFNumberFloatType:
      return kCFNumberFloat32Type;
    case kCFNumberDoubleType:
    case kCFNumberCGFloatType:
      return kCFNumberFloat64Type;
    default:
      return type;
  }
}

template <typename T>
T read(const void* value) {
  T read_value;
  std::memcpy(&read_value, value, sizeof read_value);
  return read_value;
}

struct Conversion {
  int64_t bits;
  bool exact;
};

Conversion to_int64(const CFNumberObject& number) {
  if (!number.is_real()) return {number.integer, true};
  if (!(number.real >= -kTwoTo63 && number.real < kTwoTo63)) return {INT64_MIN, false};
  const int64_t whole = static_cast<int64_t>(number.real);
  return {whole, static_cast<double>(whole) == number.real};
}

double to_double(const CFNumberObject& number) {
  if (number.is_real()) return number.real;
  return number.above_int64 ? static_cast<double>(static_cast<uint64_t>(number.integer))
                            : static_cast<double>(number.integer);
}

// Whether an integer is exactly this double.
bool equals(const CFNumberObject& integer, double value) {
  if (!integer.above_int64) return value < kTwoTo63 && static_cast<int64_t>(value) == integer.integer;
  return value < 2 * kTwoTo63 && static_cast<uint64_t>(value) == static_cast<uint64_t>(integer.integer);
}

template <typename T>
bool write_integer(const CFNumberObject& number, void* value) {
  const Conversion wide = to_int64(number);
  const T narrow = static_cast<T>(wide.bits);
  std::memcpy(value, &narrow, sizeof narrow);
  return wide.exact && narrow == wide.bits && (sizeof narrow == sizeof wide.bits || !number.above_int64);
}

template <typename T>
bool write_real(const CFNumberObject& number, void* value) {
  const double wide = to_double(number);
  const T narrow = static_cast<T>(wide);
  std::memcpy(value, &narrow, sizeof narrow);
  const bool kept = static_cast<double>(narrow) == wide || std::isnan(wide);
  return kept && (number.is_real() || equals(number, wide));
}

}  // namespace

bool equal_numbers(const CFNumberObject& left, const CFNumberObject& right) {
  if (left.is_real() && right.is_real()) return left.real == right.real;
  if (left.is_real()) return equal_numbers(right, left);
  if (right.is_real()) return to_double(left) == right.real && equals(left, right.real);
  return left.integer == right.integer && left.above_int64 == right.above_int64;
}

}  // namespace cf

const CFBooleanRef kCFBooleanTrue = &cf::kTrueObject;
const CFBooleanRef kCFBooleanFalse = &cf::kFalseObject;

CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(cf::Kind::boolean); }

Boolean CFBooleanGetValue(CFBooleanRef boolean) { return boolean->value; }

CFTypeID CFNumberGetTypeID() { return static_cast<CFTypeID>(cf::Kind::number); }

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
  const CFNumberType sized = cf::sized_type(type);
  const auto integer = [sized](int64_t number) { return cf::create<CFNumberObject>(sized, number); };
  const auto real = [sized](double number) { return cf::create<CFNumberObject>(sized, number); };
  switch (sized) {
    case kCFNumberSInt8Type:
      return integer(cf::read<int8_t>(value));
    case kCFNumberSInt16Type:
      return integer(cf::read<int16_t>(value));
    case kCFNumberSInt32Type:
      return integer(cf::read<int32_t>(value));
    case kCFNumberFloat32Type:
      return real(static_cast<double>(cf::read<float>(value)));
    case kCFNumberFloat64Type:
      return real(cf::read<double>(value));
    default:
      return integer(cf::read<int64_t>(value));
  }
}

CFNumberType CFNumberGetType(CFNumberRef number) { return static_cast<CFNumberType>(number->type); }

Boolean CFNumberIsFloatType(CFNumberRef number) { return number->is_real(); }

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  switch (cf::sized_type(type)) {
    case kCFNumberSInt8Type:
      return cf::write_integer<int8_t>(*number, value);
    case kCFNumberSInt16Type:
      return cf::write_integer<int16_t>(*number, value);
    case kCFNumberSInt32Type:
      return cf::write_integer<int32_t>(*number, value);
    case kCFNumberFloat32Type:
      return cf::write_real<float>(*number, value);
    case kCFNumberFloat64Type:
      return cf::write_real<double>(*number, value);
    default:
      return cf::write_integer<int64_t>(*number, value);
  }
}
