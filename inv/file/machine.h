// Whose scan a file holds, and of when.
#pragma once

#include <string>
#include <string_view>

#include "inv/file/inventory.h"

namespace inv {

// Whether a serial number or a UUID identifies nothing: an empty text, zeros, and what makers and virtual
// machines leave there ("System Serial#"), in any case.
bool is_placeholder(std::string_view text);

// What identifies a machine, the same in every file of it: its serial number; without one that identifies
// anything its platform UUID; else its name and its hardware address, as far as the file knows them; else the
// file's name. Of a debug file they are those that the scan would have found in the profiler's output.
std::string machine_identity(const Inventory& inventory);
// What people call it: computer name, host name, else its identity.
std::string machine_name(const Inventory& inventory);
// When it was scanned, as the file has it: "20120118153045.000000+120"; empty when it does not say.
std::string scan_timestamp(const Inventory& inventory);
// The same moment in UTC, "2012-01-18T13:30:45Z"; empty when the file does not say, or nothing that can be
// understood. A scan with further facts names the calendar of its date.
std::string scan_time(const Inventory& inventory);

}  // namespace inv
