// The profiler's output as CoreFoundation reads it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "platform/cf_ref.h"
#include "profiler/acquisition.h"

// The array of data-type dictionaries. A document that CoreFoundation refuses, would read only in part, that
// is nested more deeply than is safe, or of outputs that hold NULs, is put together again from what can be
// salvaged of the single outputs; a data type that stays unreadable is named on standard error and left out.
// None only when nothing at all can be read.
CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document);

// The same for the profiler's output over its own choice of data types.
CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output);
