#include "extended/security_platform.h"

#include <cstring>
#include <string>

#include "extended/facts.h"
#include "extended/tool_texts.h"

namespace {

constexpr CopiedField kHardwareSwitches[] = {{"activation_lock_status", "activation-lock"}};
constexpr CopiedField kSoftwareSwitches[] = {{"system_integrity", "system-integrity-protection-by-profiler"}};
constexpr CopiedField kBridgeFields[] = {
    {"ibridge_secure_boot", "secure-boot"},
    {"ibridge_sb_sip", "secure-boot-sip"},
};
constexpr const char* kFirewallLists[] = {"spfirewall_services", "spfirewall_applications"};

void write_protection(Place& security, const std::string& name, const ProtectionState& state) {
  set_yes_or_no(security, name.c_str(), state.on);
  set_text(security, (name + "-status").c_str(), state.line.get());
}

void write_enrollment(Place& security, const Enrollment& enrollment) {
  set_yes_or_no(security, "enrolled-by-dep", enrollment.by_program);
  set_yes_or_no(security, "mdm-enrolled", enrollment.managed);
  set_yes_or_no(security, "mdm-user-approved", enrollment.user_approved);
  set_text(security, "mdm-server", enrollment.server.get());
}

bool is_not_older(const Tag& item, const Tag& other) {
  const char* date = find_date(item, "install_date");
  const char* other_date = find_date(other, "install_date");
  return !other_date || (date && std::strcmp(date, other_date) >= 0);
}

void write_xprotect_version(Place& security, const InventoryTree& additional) {
  const Tag* items = find_items(additional, "SPInstallHistoryDataType");
  if (!items) return;
  const Tag* newest = nullptr;
  for (const auto& item : items->children()) {
    if (!text_is(*item, "_name", "XProtectPlistConfigData")) continue;
    if (!newest || is_not_older(*item, *newest)) newest = item.get();
  }
  if (newest) copy_field(security, "xprotect-version", *newest, "install_version");
}

// What the firewall opens to the local network only.
void write_local_rules(Place& security, const Tag* firewall) {
  if (!firewall) return;
  std::vector<const char*> names;
  for (const char* key : kFirewallLists) {
    const Tag* rules = firewall->find_child(key);
    if (!rules) continue;
    for (const auto& rule : rules->children()) {
      const char* name = find_text(*rule, "_name");
      if (name && text_is(*rule, "value", "spfirewall_allow_local")) names.push_back(name);
    }
  }
  set_joined(security, "firewall-allow-local", names);
}

}  // namespace

void collect_security_platform(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const ToolOutputs& tools = inputs.tools;
  Place security(snapshot.root(), "/Security/Platform");
  write_protection(security, "filevault", parse_fdesetup(tools.fdesetup.get()));
  write_protection(security, "system-integrity-protection", parse_csrutil(tools.csrutil.get()));
  if (const Tag* software = first_item(inputs.profiler, "SPSoftwareDataType"))
    copy_switches(security, *software, kSoftwareSwitches);
  write_protection(security, "gatekeeper", parse_spctl(tools.spctl.get()));
  if (const Tag* hardware = first_item(inputs.profiler, "SPHardwareDataType"))
    copy_switches(security, *hardware, kHardwareSwitches);
  copy_fields_of(security, first_item(inputs.additional, "SPiBridgeDataType"), kBridgeFields);
  write_enrollment(security, parse_profiles(tools.profiles.get()));
  write_xprotect_version(security, inputs.additional);
  write_local_rules(security, first_item(inputs.profiler, "SPFirewallDataType"));
}
