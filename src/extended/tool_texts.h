// What the small tools of the system print, read into plain facts. Every parser takes any bytes up to a NUL,
// and none for a tool that was not run; what the output does not tell is left empty.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "driver/base/text.h"

// The texts behind the labels of `sw_vers`.
struct SystemVersion {
  Text name;           // "macOS"
  Text version;        // "15.3.1"
  Text version_extra;  // of a rapid security response: "(a)"
  Text build;          // "24D70"
};
SystemVersion parse_sw_vers(const char* output);

// From `sysctl hw machdep.cpu kern.hv_vmm_present`: lines "name: value" or, on old systems, "name = value".
struct ProcessorFacts {
  Text name;  // "Apple M1 Pro"
  std::optional<int64_t> physical_cores;
  std::optional<int64_t> logical_cores;
  // Of the levels that say so by their name; where levels have no names, the first is the fast one.
  std::optional<int64_t> performance_cores;
  std::optional<int64_t> efficiency_cores;
  std::optional<bool> virtual_machine;
};
ProcessorFacts parse_sysctl(const char* output);

// The state of a protection, and the line that tells it. A line in other words than the known ones tells no
// state; an output without such a line neither.
struct ProtectionState {
  std::optional<bool> on;
  Text told;
};
ProtectionState parse_fdesetup(const char* output);  // "FileVault is On."
ProtectionState parse_csrutil(const char* output);   // "System Integrity Protection status: enabled."
ProtectionState parse_spctl(const char* output);     // "assessments enabled"

// From `profiles status -type enrollment`.
struct Enrollment {
  std::optional<bool> by_program;  // through the maker's program for organisations: "Enrolled via DEP: Yes"
  std::optional<bool> managed;     // "MDM enrollment: Yes"
  std::optional<bool> user_approved;  // of a managed Mac: "MDM enrollment: Yes (User Approved)"
  Text server;                        // "MDM server: https://..."
};
Enrollment parse_profiles(const char* output);

// Whether Rosetta's runtime is there, from `ls -d` of it.
std::optional<bool> parse_rosetta(const char* output);

// A number of digits alone, of at most 18; none for anything else.
std::optional<int64_t> parse_digits(std::string_view text);
