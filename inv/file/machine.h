// Which machine a file describes, and when it was scanned.
#pragma once

#include <string>
#include <string_view>

#include "inv/file/inventory.h"

namespace inv {

// Whether a serial number or a UUID identifies nothing: an empty text, zeros, and what makers and virtual
// machines leave there ("System Serial#"), in any case.
bool is_placeholder(std::string_view text);

// What identifies a machine, the same in all its files: its serial number; if that is a placeholder its
// platform UUID; else its name and hardware address, as far as the file has them; else the file's name. For a
// debug file they come from the profiler's output, as in a scan.
std::string machine_identity(const Inventory& inventory);
// Its name for people: computer name, else host name, else its identity.
std::string machine_name(const Inventory& inventory);
// When it was scanned, as in the file: "20120118153045.000000+120"; empty if it does not say.
std::string scan_timestamp(const Inventory& inventory);
// The same moment in UTC, "2012-01-18T13:30:45Z"; empty if the file does not say, or nothing intelligible. An
// extended scan names the calendar of its date.
std::string scan_time(const Inventory& inventory);

}  // namespace inv
