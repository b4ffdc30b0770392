// The machine's primary network adapter and what its active location says about it: the identity under which
// the console files the machine.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "driver/base/text.h"

struct NetworkIdentity {
  Text workgroup;     // in upper case; null without a service that names one
  Text netbios_name;  // of the same service; null when it has none
  // "00-1E-C2-0A-11-2B"; null unless a service of the active location has the chosen adapter's address.
  Text hardware_address;
  Text ip_address;      // the given one, else the chosen adapter's first; null without such an adapter
  bool manual = false;  // the chosen adapter's IPv4 address was entered by hand
};

// The identity from the profiler's parsed list (null counts as an empty list). given_ip chooses the adapter
// whose first address it is; when there is no such adapter, a line on standard error says so. With null, en0
// is chosen or, after an en0 without an address, en1, and so on.
NetworkIdentity query_network_identity(CFArrayRef list, const char* given_ip);
