// What the system really prints: a driver's log line before the list, one byte of another encoding in a
// printer's name, a run that died half-way. CoreFoundation then refuses the whole list; this rewrites it, so
// that at most one value is lost.
#pragma once

#include "profiler/acquisition.h"

// A new output in the profiler's usual frame that holds whatever can still be read of the given one: invalid
// bytes become U+FFFD, unknown entities text, unreadable values disappear with their key, what is open at the
// end is closed. The name of the data type, and the keys and values on which many facts depend, are repaired
// when one byte is damaged. Its text is null when nothing in the given one is part of a list.
ProfilerOutput salvage_output(const ProfilerOutput& output);
