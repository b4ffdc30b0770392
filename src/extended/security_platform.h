// How the system protects itself and who manages it, from the profiler's SPHardwareDataType,
// SPSoftwareDataType, SPFirewallDataType, SPiBridgeDataType and SPInstallHistoryDataType, and from fdesetup,
// csrutil, spctl and profiles.
#pragma once

#include "extended/inputs.h"

// Writes "/Security/Platform". Of a protection whose tool tells it, the tool's line stands beside yes or no,
// in "NAME-status". What the profiler says of system integrity protection stands beside what csrutil says.
// The version of XProtect is that of its newest installation; of two on one date the later in the history
// counts.
void collect_security_platform(InventoryTree& snapshot, const ExtendedInputs& inputs);
