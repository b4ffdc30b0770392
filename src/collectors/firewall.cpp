#include "collectors/firewall.h"

#include "collectors/fields.h"

namespace {

constexpr char kGlobalState[] = "spfirewall_globalstate";
constexpr char kLimited[] = "spfirewall_globalstate_limit_connections";

struct State {
  const char* state;
  const char* status;
};

constexpr State kStates[] = {
    {"spfirewall_globalstate_allow_all", "0"},
    {kLimited, "1"},
    {"spfirewall_globalstate_block_all", "2"},
};

// A list of what the firewall lets through or blocks, and the elements for it.
struct RuleList {
  const char* key;
  const char* path;
  const char* element;
};

constexpr RuleList kRuleLists[] = {
    {"spfirewall_services", "/Security/Firewall/Services", "service:"},
    {"spfirewall_applications", "/Security/Firewall/Apps", "app:"},
};

constexpr CopiedField kSwitches[] = {
    {"spfirewall_stealthenabled", "stealth-mode"},
    {"spfirewall_loggingenabled", "fw-log"},
};

void write_rules(Tag& snapshot, const Tag& item, const RuleList& list) {
  const Tag* rules = find_list(item, list.key);
  if (!rules) return;
  Place elements(snapshot, list.path);
  int number = 0;
  for (const auto& rule : rules->children()) {
    const std::string name = list.element + std::to_string(++number);
    CompoundField element(elements, name, Place::Names::distinct);
    element.set_value(copied_value(*rule, "_name"));
    element.set_member("status", yes_no(!text_is(*rule, "value", "spfirewall_block_all")));
  }
}

void write_firewall(Tag& snapshot, const Tag& item) {
  Place firewall(snapshot, "/Security/Firewall");
  for (const State& state : kStates) {
    if (text_is(item, kGlobalState, state.state)) firewall.set_attribute("status", text_value(state.status));
  }
  if (text_is(item, kGlobalState, kLimited)) {
    for (const RuleList& list : kRuleLists) write_rules(snapshot, item, list);
  }
  // Unlike a printer's, these switches are spelt with a capital letter.
  for (const CopiedField& field : kSwitches) set_switch(firewall, field.name, item, field.key, "No");
}

}  // namespace

void collect_firewall(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* items = find_items(profiler, "SPFirewallDataType");
  if (!items) return;
  for (const auto& item : items->children()) write_firewall(snapshot.root(), *item);
}
