#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct CFBooleanObject* CFBooleanRef;
typedef const struct CFNumberObject* CFNumberRef;

typedef enum CFNumberType : CFIndex {
  kCFNumberSInt8Type = 1,
  kCFNumberSInt16Type = 2,
  kCFNumberSInt32Type = 3,
  kCFNumberSInt64Type = 4,
  kCFNumberFloat32Type = 5,
  kCFNumberFloat64Type = 6,
  kCFNumberCharType = 7,
  kCFNumberShortType = 8,
  kCFNumberIntType = 9,
  kCFNumberLongType = 10,
  kCFNumberLongLongType = 11,
  kCFNumberFloatType = 12,
  kCFNumberDoubleType = 13,
  kCFNumberCFIndexType = 14,
  kCFNumberNSIntegerType = 15,
  kCFNumberCGFloatType = 16,
  kCFNumberMaxType = 16
} CFNumberType;

extern "C" {

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

CFTypeID CFNumberGetTypeID(void);
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
// One of the types 1 to 6: the sized type of what the number was created from. Of a property list, zero is 3,
// the other integers are 4, and the reals 6. (On a Mac without tagged pointers, -1 to 12 are 3 as well.)
CFNumberType CFNumberGetType(CFNumberRef number);
Boolean CFNumberIsFloatType(CFNumberRef number);
// False when the value does not fit exactly; *value is then the nearest that the conversion gives. An integer
// from 2^63 up to 2^64 - 1 reads as its 64 bits, with true.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
}
