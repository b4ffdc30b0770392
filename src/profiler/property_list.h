// The profiler's output as CoreFoundation reads it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "platform/cf_ref.h"
#include "profiler/acquisition.h"

// The array of data-type dictionaries, never none. Where CoreFoundation refuses the document, or would read
// it only in part, where it is nested more deeply than is safe or made of outputs that hold NULs, the outputs
// are parsed one by one: a healthy one as the tool wrote it, a damaged one as it can be salvaged.
CFRef<CFArrayRef> parse_profiler_document(const ProfilerDocument& document);

// The same for one output. None when it holds nothing of a list; a line on standard error says so, unless the
// output is empty.
CFRef<CFArrayRef> parse_profiler_output(const ProfilerOutput& output);
