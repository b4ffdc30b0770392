// The network adapters, from the profiler's SPNetworkDataType.
#pragma once

#include "driver/base/text.h"
#include "zxml/zXML.h"

// The profiler's "00:1e:c2:0a:11:2b" as the inventory has it: "00-1E-C2-0A-11-2B".
Text hardware_address_text(const char* address);

// Writes "/Network/Adapters/net-adapter:n" for every adapter in the profiler's order.
void collect_network_adapters(InventoryTree& snapshot, InventoryTree& profiler);
