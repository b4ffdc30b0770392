#pragma once

#include <CoreFoundation/CFBase.h>

// Keys are always strings and values CoreFoundation objects; the dictionary retains both.
typedef struct {
  CFIndex version;
} CFDictionaryKeyCallBacks;
typedef struct {
  CFIndex version;
} CFDictionaryValueCallBacks;

extern "C" {

extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeID CFDictionaryGetTypeID(void);
// The keys given are distinct.
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* key_callbacks,
                                   const CFDictionaryValueCallBacks* value_callbacks);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
Boolean CFDictionaryContainsKey(CFDictionaryRef dictionary, const void* key);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef dictionary, const void* key, const void** value);
// In the order of the document, where Apple's order is that of a hash: the one deliberate difference.
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values);
}
