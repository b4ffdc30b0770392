#include "extended/network_details.h"

#include <string>
#include <unordered_map>

#include "extended/facts.h"

namespace {

constexpr CopiedField kIpv4Lists[] = {{"Addresses", "ipv4-addresses"}, {"SubnetMasks", "subnet-masks"}};
constexpr CopiedField kIpv4Fields[] = {{"ConfigMethod", "config-method"}};
constexpr CopiedField kIpv6Lists[] = {{"Addresses", "ipv6-addresses"}};
constexpr CopiedField kIpv6Fields[] = {{"ConfigMethod", "ipv6-config-method"}};
constexpr CopiedField kDnsLists[] = {{"ServerAddresses", "dns-servers"}, {"SearchDomains", "search-domains"}};
constexpr CopiedField kDhcpFields[] = {{"dhcp_server_identifier", "dhcp-server"}};
constexpr CopiedField kEthernetFields[] = {{"MediaSubType", "link-speed"}};
constexpr CopiedField kEthernetLists[] = {{"MediaOptions", "link-options"}};
constexpr CopiedField kCardFields[] = {
    {"spairport_wireless_card_type", "card-type"},
    {"spairport_wireless_firmware_version", "firmware"},
    {"spairport_wireless_country_code", "country-code"},
    {"spairport_supported_phymodes", "phy-modes"},
    {"spairport_wireless_locale", "locale"},
};

using Cards = std::unordered_map<std::string, const Tag*>;

// By interface.
Cards wireless_cards(const InventoryTree& profiler) {
  Cards cards;
  const Tag* items = find_items(profiler, "SPAirPortDataType");
  if (!items) return cards;
  for (const auto& item : items->children()) {
    const Tag* interfaces = find_list(*item, "spairport_airport_interfaces");
    if (!interfaces) continue;
    for (const auto& card : interfaces->children()) {
      if (const char* interface = find_text(*card, "_name")) cards.emplace(interface, card.get());
    }
  }
  return cards;
}

template <size_t lists, size_t fields>
void copy_part(Place& element, const Tag& item, const char* key, const CopiedField (&list_table)[lists],
               const CopiedField (&field_table)[fields]) {
  const Tag* part = item.find_child(key);
  if (!part) return;
  copy_lists(element, *part, list_table);
  copy_fields(element, *part, field_table);
}

void write_adapter(Place& element, const Tag& item) {
  copy_part(element, item, "IPv4", kIpv4Lists, kIpv4Fields);
  copy_part(element, item, "IPv6", kIpv6Lists, kIpv6Fields);
  if (const Tag* dns = item.find_child("DNS")) copy_lists(element, *dns, kDnsLists);
  copy_fields_of(element, item.find_child("dhcp"), kDhcpFields);
  copy_part(element, item, "Ethernet", kEthernetLists, kEthernetFields);
  set_number(element, "service-order", find_number(item, "spnetwork_service_order"));
}

void write_card(Place& element, const Tag& item, const Cards& cards) {
  const char* interface = find_text(item, "interface");
  const auto card = interface ? cards.find(interface) : cards.end();
  if (card != cards.end()) copy_fields(element, *card->second, kCardFields);
}

}  // namespace

void collect_network_details(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* items = find_items(inputs.profiler, "SPNetworkDataType");
  if (!items) return;
  const Cards cards = wireless_cards(inputs.profiler);
  Place details(snapshot.root(), "/Network/Details");
  int number = 0;
  for (const auto& item : items->children()) {
    Place element(details, "adapter:" + std::to_string(++number), Place::Names::distinct);
    write_adapter(element, *item);
    write_card(element, *item, cards);
  }
}
