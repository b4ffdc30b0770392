// Stand-in on Linux for Apple's framework: the computer name.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef const struct SCDynamicStoreObject* SCDynamicStoreRef;

extern "C" {

// What `scutil --get ComputerName` prints where such a tool is on PATH, else the host name; for the caller to
// release. The store is ignored, and no encoding is determined: *encoding, where given, is UTF-8.
CFStringRef SCDynamicStoreCopyComputerName(SCDynamicStoreRef store, CFStringEncoding* encoding);
}
