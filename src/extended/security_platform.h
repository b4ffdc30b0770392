// How the system protects itself and who manages it, from the profiler's SPHardwareDataType,
// SPSoftwareDataType, SPFirewallDataType, SPiBridgeDataType and SPInstallHistoryDataType, and from fdesetup,
// csrutil, spctl and profiles.
#pragma once

#include "extended/inputs.h"

// Writes "/Security/Platform". Each protection that a tool reports is there twice: as yes or no, and as the
// tool's own line in "NAME-status". System integrity protection is also there as the profiler reports it. The
// version of XProtect is that of its newest installation; of two on the same date, the later in the history
// counts.
void collect_security_platform(InventoryTree& snapshot, const ExtendedInputs& inputs);
