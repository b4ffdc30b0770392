// The identity of the main board, which the profiler of older systems does not report.
#pragma once

#include "driver/base/text.h"

// The platform UUID as ioreg prints it, without quotes or a line end: "00000000-0000-1000-8000-001EC20A112B".
// Empty if ioreg is missing or prints no UUID; null if no shell could be started.
Text query_platform_uuid();
