// The profiler's output, parsed by CoreFoundation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "platform/cf_ref.h"
#include "profiler/acquisition.h"

// The array of data-type dictionaries; none when there is none to be read.
CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document);
CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output);
