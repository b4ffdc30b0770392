#include "collectors/network_adapters.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "collectors/fields.h"

namespace {

// The first three octets of a hardware address name its maker.
constexpr size_t kMakerLength = 8;

// Empty if there is anything else among them: the identity reads the list the same way.
std::vector<const char*> addresses_in(const Tag* list) {
  std::vector<const char*> addresses = texts_in(list);
  const bool all = list && list->children().empty() && addresses.size() == list->attributes().size();
  if (!all) addresses.clear();
  return addresses;
}

void set_hardware_address(Place& adapter, const Tag& item) {
  const Tag* ethernet = item.find_child("Ethernet");
  const char* reported = ethernet ? find_text(*ethernet, "MAC_Address") : nullptr;
  if (!reported) return;
  const Text address = hardware_address_text(reported);
  const Text maker = copy_range(address.get(), address.get() + std::min(std::strlen(reported), kMakerLength));
  adapter.set_attribute("manuf-by-mac", text_value(maker.get()));
  adapter.set_attribute("mac-address", text_value(address.get()));
}

void write_adapter(Place& adapter, const Tag& item) {
  copy_element_value(adapter, item, "_name");
  copy_field(adapter, "bsd-device-name", item, "interface");
  copy_field(adapter, "type", item, "type");
  set_joined(adapter, "ip-address", addresses_in(find_list(item, "ip_address")));
  set_joined(adapter, "ip-subnet", texts_in(find_list(item, "SubnetMasks")));
  set_hardware_address(adapter, item);
  if (const Tag* ipv4 = item.find_child("IPv4")) copy_field(adapter, "default-gateway", *ipv4, "Router");
}

}  // namespace

Text hardware_address_text(const char* address) {
  Text converted = copy_text(address);
  upper_case_ascii(converted.get());
  std::replace(converted.get(), converted.get() + std::strlen(address), ':', '-');
  return converted;
}

void collect_network_adapters(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* items = find_items(profiler, "SPNetworkDataType");
  if (!items) return;
  Place adapters(snapshot.root(), "/Network/Adapters");
  int number = 0;
  for (const auto& item : items->children()) {
    Place adapter(adapters, "net-adapter:" + std::to_string(++number), Place::Names::distinct);
    write_adapter(adapter, *item);
  }
}
