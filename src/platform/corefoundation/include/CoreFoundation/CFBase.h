// Stand-in on Linux for Apple's header of this name: the part that the scanner and its tests use.
// Apple's documentation applies, except for what is said here.
#pragma once

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef signed short SInt16;
typedef unsigned int UInt32;
typedef signed int SInt32;
typedef unsigned long long UInt64;
typedef signed long long SInt64;
typedef float Float32;
typedef double Float64;
typedef UInt16 UniChar;
typedef UInt32 UTF32Char;

typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef signed long CFIndex;

typedef const void* CFTypeRef;
typedef const struct CFAllocatorObject* CFAllocatorRef;
typedef const struct CFStringObject* CFStringRef;
typedef const struct CFArrayObject* CFArrayRef;
typedef const struct CFDictionaryObject* CFDictionaryRef;
typedef CFTypeRef CFPropertyListRef;

typedef enum CFComparisonResult : CFIndex {
  kCFCompareLessThan = -1,
  kCFCompareEqualTo = 0,
  kCFCompareGreaterThan = 1
} CFComparisonResult;

static const CFIndex kCFNotFound = -1;

typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range = {location, length};
  return range;
}

extern "C" {

// Everything is allocated with malloc, whatever allocator is named; kCFAllocatorNull matters only as the
// owner of bytes that are not to be freed.
extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFAllocatorRef kCFAllocatorMalloc;
extern const CFAllocatorRef kCFAllocatorNull;

CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeRef CFRetain(CFTypeRef object);
// Safe for structures of any depth.
void CFRelease(CFTypeRef object);
CFIndex CFGetRetainCount(CFTypeRef object);
Boolean CFEqual(CFTypeRef left, CFTypeRef right);
}
