#include "extended/security_platform.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

std::string security(const std::string& lines) {
  return in_snapshot("+Security=\n*Platform=\n" + lines + "-\n");
}

TEST(SecurityPlatform, HasEveryProtection) {
  Mac mac;
  add_item(mac.profiler, "SPHardwareDataType", {{"activation_lock_status", "activation_lock_enabled"}});
  add_item(mac.profiler, "SPSoftwareDataType", {{"system_integrity", "integrity_disabled"}});
  add_item(mac.additional, "SPiBridgeDataType",
           {{"ibridge_secure_boot", "Full Security"}, {"ibridge_sb_sip", "Enabled"}});
  mac.tools.fdesetup = copy_text("FileVault is On.\n");
  mac.tools.csrutil = copy_text("System Integrity Protection status: enabled.\n");
  mac.tools.spctl = copy_text("assessments disabled\n");
  mac.tools.profiles = copy_text(
      "Enrolled via DEP: No\nMDM enrollment: Yes (User Approved)\nMDM server: https://mdm.example.com\n");
  EXPECT_EQ(written(collect_security_platform, mac),
            security("filevault=1\n"
                     "filevault-status=FileVault is On.\n"
                     "system-integrity-protection=1\n"
                     "system-integrity-protection-status=System Integrity Protection status: enabled.\n"
                     "system-integrity-protection-by-profiler=0\n"
                     "gatekeeper=0\n"
                     "gatekeeper-status=assessments disabled\n"
                     "activation-lock=1\n"
                     "secure-boot=Full Security\n"
                     "secure-boot-sip=Enabled\n"
                     "enrolled-by-dep=0\n"
                     "mdm-enrolled=1\n"
                     "mdm-user-approved=1\n"
                     "mdm-server=https://mdm.example.com\n"));
}

TEST(SecurityPlatform, IsEmptyWithoutData) {
  Mac mac;
  EXPECT_EQ(written(collect_security_platform, mac), kEmptySnapshot);
  mac.tools.fdesetup = copy_text("fdesetup: must be run as root\n");
  mac.tools.csrutil = copy_text("");
  add_item(mac.profiler, "SPHardwareDataType", {{"activation_lock_status", "unknown"}});
  add_item(mac.profiler, "SPSoftwareDataType", {{"system_integrity", 1}});
  EXPECT_EQ(written(collect_security_platform, mac), kEmptySnapshot);
}

void add_installation(Mac& mac, const char* name, const char* version, const char* date) {
  add_item(mac.additional, "SPInstallHistoryDataType",
           {{"_name", name}, {"install_version", version}, {"install_date", date}});
}

TEST(SecurityPlatform, HasTheNewestXProtect) {
  Mac mac;
  add_installation(mac, "XProtectPlistConfigData", "2", "20250102000000.000000+000");
  add_installation(mac, "XProtectPlistConfigData", "3", "20250103000000.000000+000");
  add_installation(mac, "XProtectPlistConfigData", "1", "20250101000000.000000+000");
  add_installation(mac, "XProtectPayloads", "9", "20250109000000.000000+000");
  EXPECT_EQ(written(collect_security_platform, mac), security("xprotect-version=3\n"));
}

TEST(SecurityPlatform, TakesTheLaterOfTwoXProtectsWithTheSameDate) {
  Mac mac;
  add_installation(mac, "XProtectPlistConfigData", "1", "2025-01-02 00:00:00");
  add_installation(mac, "XProtectPlistConfigData", "2", "2025-01-02 00:00:00");
  EXPECT_EQ(written(collect_security_platform, mac), security("xprotect-version=2\n"));
}

TEST(SecurityPlatform, PrefersAnXProtectWithADate) {
  Mac mac;
  const Item undated = {{"_name", "XProtectPlistConfigData"}, {"install_version", "1"}};
  add_item(mac.additional, "SPInstallHistoryDataType", undated);
  EXPECT_EQ(written(collect_security_platform, mac), security("xprotect-version=1\n"));
  add_installation(mac, "XProtectPlistConfigData", "2", "2025-01-02");
  add_item(mac.additional, "SPInstallHistoryDataType", undated);
  EXPECT_EQ(written(collect_security_platform, mac), security("xprotect-version=2\n"));
}

TEST(SecurityPlatform, NamesWhatOnlyTheLocalNetworkCanReach) {
  Mac mac;
  add_item(mac.profiler, "SPFirewallDataType",
           {{"spfirewall_applications/item0/_name", "com.example.player"},
            {"spfirewall_applications/item0/value", "spfirewall_allow_local"},
            {"spfirewall_services/item0/_name", "com.example.ssh"},
            {"spfirewall_services/item0/value", "spfirewall_allow_local"},
            {"spfirewall_services/item1/_name", "com.example.ftp"},
            {"spfirewall_services/item1/value", "spfirewall_allow_all"},
            {"spfirewall_services/item2/value", "spfirewall_allow_local"}});
  EXPECT_EQ(written(collect_security_platform, mac),
            security("firewall-allow-local=com.example.ssh, com.example.player\n"));
}

TEST(SecurityPlatform, FollowsTheFirewall) {
  Mac mac;
  mac.tools.spctl = copy_text("assessments enabled\n");
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/Security/Firewall/status", text_value("1"));
  collect_security_platform(snapshot, mac.inputs());
  EXPECT_EQ(tree_text(snapshot), in_snapshot("+Security=\n*Firewall=\nstatus=1\n*Platform=\ngatekeeper=1\n"
                                             "gatekeeper-status=assessments enabled\n-\n"));
}

}  // namespace
