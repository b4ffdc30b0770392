#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct CFCharacterSetObject* CFCharacterSetRef;

extern "C" {

CFTypeID CFCharacterSetGetTypeID(void);
CFCharacterSetRef CFCharacterSetCreateWithCharactersInString(CFAllocatorRef allocator,
                                                             CFStringRef characters);
Boolean CFCharacterSetIsLongCharacterMember(CFCharacterSetRef set, UTF32Char character);
}
