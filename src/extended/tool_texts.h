// Parsers for what the system's small tools print. Each takes any bytes up to a NUL, or null for a tool that
// was not run; what the output does not say is left empty.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "driver/base/text.h"

// From `sw_vers`.
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
  // By the names of the performance levels; where these have no names, the first is the fast one.
  std::optional<int64_t> performance_cores;
  std::optional<int64_t> efficiency_cores;
  std::optional<bool> virtual_machine;
};
ProcessorFacts parse_sysctl(const char* output);

// The state of a protection, and the line that says so. Both are empty without such a line, the state also
// where the line has unknown words.
struct ProtectionState {
  std::optional<bool> on;
  Text line;
};
ProtectionState parse_fdesetup(const char* output);  // "FileVault is On."
ProtectionState parse_csrutil(const char* output);   // "System Integrity Protection status: enabled."
ProtectionState parse_spctl(const char* output);     // "assessments enabled"

// From `profiles status -type enrollment`.
struct Enrollment {
  std::optional<bool> by_program;     // through Apple's program for organisations: "Enrolled via DEP: Yes"
  std::optional<bool> managed;        // "MDM enrollment: Yes"
  std::optional<bool> user_approved;  // of a managed Mac: "MDM enrollment: Yes (User Approved)"
  Text server;                        // "MDM server: https://..."
};
Enrollment parse_profiles(const char* output);

// Whether Rosetta's runtime is installed, from `ls -d` of it.
std::optional<bool> parse_rosetta(const char* output);

// A number of at most 18 digits; empty for anything else.
std::optional<int64_t> parse_digits(std::string_view text);
