// The operating system, from the profiler's SPSoftwareDataType.
#pragma once

#include <cstdint>

#include "driver/base/text.h"
#include "zxml/zXML.h"

// What the profiler's "Mac OS X 10.6.8 (10K549)" says. Everything is read by its position in the texts of
// systems up to 10.7; a text of another shape is cut at the same places.
struct OsVersion {
  Text name;     // "Mac OS X v10.6 (Snow Leopard)", or the whole text for a minor version not known by name
  Text version;  // "10.6.8 (10K549)"
  Text update;   // "Update 8", or "Version(build) (11A511)" of a system without updates; null when too short
};
OsVersion parse_os_version(const char* os_version);

// The seconds in "up 2:03:04:05" (days, hours, minutes, seconds). Other characters count as zeros.
int64_t parse_uptime(const char* uptime);

// Writes "/OS/os:1".
void collect_os(InventoryTree& snapshot, InventoryTree& profiler);
