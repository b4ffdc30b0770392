// The profiler's output as CoreFoundation reads it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "platform/cf_ref.h"
#include "profiler/acquisition.h"

// The array of data-type dictionaries, never null. When CoreFoundation refuses the document or would read
// only part of it, or when it is nested too deeply to be safe or made of outputs with NULs, the outputs are
// parsed one by one: a healthy one as the tool wrote it, a damaged one as far as it can be salvaged.
CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document);

// The same for one output. Null if nothing in it is part of a list; a line on standard error says so, unless
// the output is empty.
CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output);
