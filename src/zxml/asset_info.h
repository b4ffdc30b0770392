// The "AssetInfo" tree: which machine this is and, under "control", its main facts, for a console that does
// not want to open the snapshot.
#pragma once

#include <memory>

#include "zxml/INVfile.h"

// The texts below are borrowed for the call. Any may be null, which is written as the empty text.

// How the machine is reached.
struct AssetNetwork {
  const char* workgroup = nullptr;
  const char* host_name = nullptr;  // in the Windows network
  const char* hardware_address = nullptr;
  const char* ip_address = nullptr;
  bool manual = false;  // the address was entered by hand
};

// The machine at a glance; numbers are decimal texts.
struct AssetSummary {
  const char* user_name = nullptr;
  const char* platform_uuid = nullptr;
  const char* os_name = nullptr;
  const char* os_update = nullptr;
  const char* os_version = nullptr;
  const char* processor_packages = nullptr;
  const char* processor_cores = nullptr;
  const char* clock_speed = nullptr;  // in MHz
  const char* processor_type = nullptr;
  const char* processor_vendor = nullptr;
  const char* machine_model = nullptr;
  const char* manufacturer = nullptr;
  const char* physical_memory = nullptr;  // in MB
  const char* video_memory = nullptr;     // in MB
  const char* display_resolution = nullptr;
  const char* display_diagonal = nullptr;  // in inches
  const char* disk_size = nullptr;         // in GB of 10^9 bytes
};

// What a normal scan knows by the time its snapshot is complete.
struct AssetInputs {
  int32_t byte_order_flag;
  const InventoryTree& snapshot;
  const char* timestamp;  // in the CIM form of dates.h
  AssetSummary summary;
  AssetNetwork network;
  const char* computer_name;
  const char* serial_number;
  const char* login;  // the option /login
};

// The tree of a normal scan, with the control summary: its facts from the summary, the number of monitors and
// the logical disks from the snapshot.
std::unique_ptr<InventoryTree> build_asset_info(const AssetInputs& inputs);

// Fills the container of a debug scan: a tree with only the machine's names and addresses, then the
// profiler's raw output, compressed. `name` is the host name, or the computer name when there is none.
void build_debug_asset_info(INVfile& container, const char* name, const AssetNetwork& network,
                            const void* raw_output, size_t length);

// Appends what a command printed to the container of a debug scan, compressed.
void add_raw_output(INVfile& container, const void* output, size_t length);
