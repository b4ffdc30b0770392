// The addresses and servers of the network adapters, from the profiler's SPNetworkDataType, and their Wi-Fi
// cards, from SPAirPortDataType.
#pragma once

#include "extended/inputs.h"

// Writes "/Network/Details/adapter:n" for each "/Network/Adapters/net-adapter:n". Lists are joined by ", ". A
// Wi-Fi card belongs to the adapter with the same interface.
void collect_network_details(InventoryTree& snapshot, const ExtendedInputs& inputs);
