// What the system really prints: a driver's log line before the list, one byte of another encoding in a
// printer's name, a run that died half-way. CoreFoundation refuses the whole list then; this rewrites it, so
// that one value is lost at most.
#pragma once

#include "profiler/acquisition.h"

// A new output in the profiler's usual frame that holds whatever can still be read of the given one: invalid
// bytes become U+FFFD, unknown entities text, unreadable values disappear with their key, what is open at the
// end is closed. The name of the data type, and the keys and values on which many facts hang, are put right
// where one byte is damaged. Its text is none where the given one holds nothing of a list.
ProfilerOutput salvage_output(const ProfilerOutput& output);
