#include "collectors/network_identity.h"

#include <cstdio>
#include <utility>

#include "collectors/network_adapters.h"
#include "profiler/plist_access.h"
#include "profiler/plist_dump.h"

namespace {

// The first of an adapter's addresses, or null. The list is read as the adapters' collector reads it in the
// tree: with anything but texts in it, it does not count.
Text first_address(CFDictionaryRef adapter) {
  const CFArrayRef addresses = find_list(adapter, CFSTR("ip_address"));
  const CFIndex count = addresses ? CFArrayGetCount(addresses) : 0;
  CFStringRef first = nullptr;
  for (CFIndex i = 0; i < count; ++i) {
    const CFTypeRef element = CFArrayGetValueAtIndex(addresses, i);
    if (leaves_no_trace(element)) continue;
    if (CFGetTypeID(element) != CFStringGetTypeID()) return nullptr;
    if (!first) first = static_cast<CFStringRef>(element);
  }
  return first ? cfstring_to_text(first) : nullptr;
}

CFDictionaryRef find_adapter_by_address(CFArrayRef adapters, const char* address) {
  for (const CFDictionaryRef adapter : dictionaries_in(adapters)) {
    if (equal_text(first_address(adapter).get(), address)) return adapter;
  }
  return nullptr;
}

// en0 when it has an address. Only an en0 without one gives way to an en1 that comes after it, and so on.
CFDictionaryRef find_primary_adapter(CFArrayRef adapters) {
  int number = 0;
  Text wanted = format_string("en%d", number);
  for (const CFDictionaryRef adapter : dictionaries_in(adapters)) {
    if (!text_is(adapter, CFSTR("interface"), wanted.get())) continue;
    if (first_address(adapter)) return adapter;
    wanted = format_string("en%d", ++number);
  }
  return nullptr;
}

bool is_manual(CFDictionaryRef adapter) {
  return text_is(find_dictionary(adapter, CFSTR("IPv4")), CFSTR("ConfigMethod"), "Manual");
}

// The adapter's address in the profiler's form; empty without an adapter or an address.
Text profiler_address(CFDictionaryRef adapter) {
  const CFDictionaryRef ethernet = find_dictionary(adapter, CFSTR("Ethernet"));
  Text address = find_text(ethernet, CFSTR("MAC Address"));
  return address ? std::move(address) : copy_text("");
}

CFDictionaryRef find_active_location(CFArrayRef locations) {
  for (const CFDictionaryRef location : dictionaries_in(locations)) {
    if (text_is(location, CFSTR("spnetworklocation_isActive"), "yes")) return location;
  }
  return nullptr;
}

CFDictionaryRef find_service(CFDictionaryRef location, const char* hardware_address) {
  for (const CFDictionaryRef service :
       dictionaries_in(find_list(location, CFSTR("spnetworklocation_services")))) {
    if (text_is(service, CFSTR("hardware_address"), hardware_address)) return service;
  }
  return nullptr;
}

// The names under which the machine is known to other systems on the network.
void read_names(NetworkIdentity& identity, CFDictionaryRef service) {
  const CFDictionaryRef smb = find_dictionary(service, CFSTR("SMB"));
  identity.workgroup = find_text(smb, CFSTR("Workgroup"));
  if (!identity.workgroup) return;
  upper_case_ascii(identity.workgroup.get());
  identity.netbios_name = find_text(smb, CFSTR("NetBIOSName"));
}

}  // namespace

NetworkIdentity query_network_identity(CFArrayRef list, const char* given_ip) {
  const CFArrayRef adapters = find_items(list, CFSTR("SPNetworkDataType"));
  const CFDictionaryRef adapter =
      given_ip ? find_adapter_by_address(adapters, given_ip) : find_primary_adapter(adapters);
  if (given_ip && !adapter) {
    std::fprintf(stderr, "No network adapter has the address %s; the machine's identity stays empty\n",
                 given_ip);
  }
  NetworkIdentity identity;
  identity.ip_address = given_ip ? copy_text(given_ip) : first_address(adapter);
  identity.manual = is_manual(adapter);

  const Text address = profiler_address(adapter);
  const CFDictionaryRef location = find_active_location(find_items(list, CFSTR("SPNetworkLocationDataType")));
  if (const CFDictionaryRef service = find_service(location, address.get())) {
    identity.hardware_address = hardware_address_text(address.get());
    read_names(identity, service);
  }
  return identity;
}
