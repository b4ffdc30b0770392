#include "inv/facts/overview_parts.h"
#include "inv/facts/overview_text.h"

namespace inv {
namespace {

std::string on_or_off(std::string_view yes_or_no) {
  if (yes_or_no == "1") return "on";
  return yes_or_no == "0" ? "off" : "";
}

// The text for yes ("1") or no ("0"); nothing for other values.
std::string when(std::string_view yes_or_no, const char* yes, const char* no) {
  if (yes_or_no == "1") return yes;
  return yes_or_no == "0" ? no : "";
}

std::string between(const char* before, const std::string& value, const char* after = "") {
  return value.empty() ? "" : before + value + after;
}

// A tool's answer: "unknown (Custom Configuration)" from "System Integrity Protection status: unknown (Custom
// Configuration)."
std::string answer_in(std::string_view status) {
  const size_t colon = status.rfind(": ");
  if (colon != status.npos) status.remove_prefix(colon + 2);
  if (!status.empty() && status.back() == '.') status.remove_suffix(1);
  return std::string(status);
}

// On or off, or what the tool printed if it was neither.
std::string state(Element platform, const std::string& name) {
  const std::string answer = on_or_off(platform.text(name));
  return answer.empty() ? answer_in(platform.text(name + "-status")) : answer;
}

// Two tools report this; both answers are shown if they differ.
std::string integrity_protection(Element platform) {
  const std::string reported = state(platform, "system-integrity-protection");
  const std::string other = on_or_off(platform.text("system-integrity-protection-by-profiler"));
  if (reported.empty() || reported == other) return between("SIP ", other);
  return between("SIP ", reported) + between(" (the profiler: ", other, ")");
}

void add(std::vector<std::string>& texts, std::string text) {
  if (!text.empty()) texts.push_back(std::move(text));
}

void read_security(Element platform, Overview& overview) {
  add(overview.security, between("FileVault ", state(platform, "filevault")));
  add(overview.security, integrity_protection(platform));
  add(overview.security, between("Gatekeeper ", state(platform, "gatekeeper")));
  add(overview.security, between("secure boot: ", text(platform, "secure-boot")));
  add(overview.security, between("Activation Lock ", on_or_off(platform.text("activation-lock"))));
  add(overview.security, between("XProtect ", text(platform, "xprotect-version")));
}

std::string management(Element platform) {
  const std::string enrolled = when(platform.text("mdm-enrolled"), "enrolled in MDM", "not enrolled in MDM");
  return joined({enrolled,
                 when(platform.text("mdm-user-approved"), "approved by the user", "not approved by the user"),
                 when(platform.text("enrolled-by-dep"), "assigned by the organisation", "")});
}

std::string firewall(Element firewall) {
  const std::string_view status = firewall.text("status");
  const char* state = "";
  if (status == "0") state = "off";
  if (status == "1") state = "on";
  if (status == "2") state = "on, blocks all connections";
  return joined({state, when(firewall.text("stealth-mode"), "stealth mode", "")});
}

void read_battery(Element battery, Overview& overview) {
  std::vector<std::string>& lines = overview.battery;
  add(lines, between("condition ", text(battery, "condition")));
  add(lines, between("", text(battery, "cycle-count"), " cycles"));
  add(lines, between("maximum capacity ", text(battery, "maximum-capacity")));
  add(lines, between("charged to ", text(battery, "charge"), " %"));
  add(lines, when(battery.text("charging"), "charging", ""));
  add(lines, between("charger of ", text(battery, "charger-watts"), " W"));
}

}  // namespace

void read_condition(Element top, Overview& overview) {
  const Element security = top.child("Security");
  read_security(security.child("Platform"), overview);
  overview.management = management(security.child("Platform"));
  overview.firewall = firewall(security.child("Firewall"));
  read_battery(top.child("Battery"), overview);
}

}  // namespace inv
