// The "AssetInfo" tree: who the machine is and, under "control", what it is in brief, for a console that does
// not want to open the snapshot.
#pragma once

#include <memory>

#include "collectors/network_identity.h"
#include "collectors/system_summary.h"
#include "zxml/INVfile.h"

// What a normal scan knows by the time its snapshot is complete. Texts may be none, which is written as the
// empty text.
struct AssetInputs {
  int32_t byte_order_flag;
  const InventoryTree& snapshot;
  const char* timestamp;  // in the CIM form of dates.h
  const SystemSummary& summary;
  const NetworkIdentity& network;
  const char* computer_name;
  const char* serial_number;
  const char* login;  // the option of this name
};

// The tree of a normal scan, with the control summary: its facts from the summary, the number of monitors and
// the logical disks from the snapshot.
std::unique_ptr<InventoryTree> build_asset_info(const AssetInputs& inputs);

// Fills the container of a debug scan: a tree that says no more than how the machine is called and reached,
// then the profiler's raw output, compressed. `name` is the host name, or the computer name when there is
// none.
void build_debug_asset_info(INVfile& container, const char* name, const NetworkIdentity& network,
                            const void* raw_output, size_t length);
