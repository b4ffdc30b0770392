// The machine at a glance: what the asset summary and the driver say about it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "driver/base/text.h"

// Every field is a text of its own, or null when the profiler does not report it. Numbers are unsigned 32-bit
// decimals.
struct SystemSummary {
  Text host_name;  // local_host_name of the first SPSoftwareDataType item
  // The short name, between the brackets of user_name. When only the profiler knows the platform UUID, it is
  // here instead and platform_uuid is null, as the console expects.
  Text user_name;
  Text platform_uuid;       // from ioreg
  Text os_name;             // as collect_os names it
  Text os_update;           // as collect_os has it
  Text os_version;          // os_version without "Mac OS X "
  Text processor_packages;  // packages of the first SPHardwareDataType item
  Text processor_cores;     // number_processors times packages
  Text clock_speed;         // in MHz
  Text processor_type;      // cpu_type
  Text processor_vendor;    // "GenuineIntel", or null for other makers
  Text machine_model;       // machine_model
  Text manufacturer;        // always "Apple Inc."
  Text physical_memory;     // in MB
  Text video_memory;        // in MB, of the first SPDisplaysDataType item
  Text display_resolution;  // of the main display
  Text display_diagonal;    // of the main display by its EDID, else of the first that has one; in inches
  Text disk_size;           // of all SPSerialATADataType disks, in GB of 10^9 bytes
  Text volume_size;         // of all their volumes, in GB of 1024^3 bytes with one decimal
  Text volume_free;         // likewise
};

// The summary from the profiler's parsed list, which holds a dictionary per data type (null counts as an
// empty list), and from ioreg.
SystemSummary query_system_summary(CFArrayRef list);
// The same with what ioreg printed; null counts as nothing.
SystemSummary summarize_system(CFArrayRef list, Text platform_uuid);
