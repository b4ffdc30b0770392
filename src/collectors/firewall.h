// The application firewall.
#pragma once

#include "zxml/zXML.h"

// Writes "/Security/Firewall" from the items of SPFirewallDataType (in practice one): the status ("0" all
// connections allowed, "1" limited, "2" all blocked; left out when it is something else), in the limited
// state the services and applications with their own, and the two switches when present. A missing data type
// writes nothing.
void collect_firewall(InventoryTree& snapshot, InventoryTree& profiler);
