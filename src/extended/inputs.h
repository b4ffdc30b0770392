// What the collectors of the extended scan read: plain data, whoever fetched it.
#pragma once

#include "driver/base/text.h"
#include "zxml/zXML.h"

// What the tools other than the profiler printed, byte for byte: null when the tool was not run or is missing
// on this system, an empty text when it printed nothing. Standard error is included.
struct ToolOutputs {
  Text sw_vers;   // sw_vers
  Text sysctl;    // sysctl hw machdep.cpu kern.hv_vmm_present
  Text fdesetup;  // fdesetup status
  Text csrutil;   // csrutil status
  Text spctl;     // spctl --status
  Text profiles;  // profiles status -type enrollment
  Text rosetta;   // ls -d of Rosetta's runtime: its path, or the error that there is no such file
};

// Both trees are raw trees as dump_profiler fills them: "Macintosh" with the data types of every scan, and
// "Additional" with those that only the extended scan asks for. Neither has booleans.
struct ExtendedInputs {
  InventoryTree& profiler;
  InventoryTree& additional;
  const ToolOutputs& tools;
  bool with_people = true;  // false: what reveals people is left out
};
