#include "collectors/firewall.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

std::string collected_firewall(std::initializer_list<Item> items) {
  InventoryTree profiler = profiler_with("SPFirewallDataType", items);
  return collected(collect_firewall, profiler);
}

std::string firewall(const std::string& lines) { return "+Snapshot=\n+Security=\n" + lines + "-\n-\n"; }

constexpr char kState[] = "spfirewall_globalstate";
constexpr char kLimited[] = "spfirewall_globalstate_limit_connections";
constexpr char kBlocked[] = "spfirewall_globalstate_block_all";

TEST(Firewall, ListsServicesAndApplicationsWhenConnectionsAreLimited) {
  EXPECT_EQ(collected_firewall({{
                {kState, kLimited},
                {"spfirewall_services/item0/_name", "com.example.ftp"},
                {"spfirewall_services/item0/value", "spfirewall_block_all"},
                {"spfirewall_services/item1/_name", "com.example.ssh"},
                {"spfirewall_services/item1/value", "spfirewall_allow_all"},
                {"spfirewall_applications/item0/_name", "com.example.player"},
                {"spfirewall_applications/item0/value", "spfirewall_allow_all"},
                {"spfirewall_stealthenabled", "Yes"},
                {"spfirewall_loggingenabled", "No"},
            }}),
            firewall("+Firewall=\n"
                     "status=1\n"
                     "stealth-mode=1\n"
                     "fw-log=0\n"
                     "+Services=\n"
                     "service:1=\n"
                     "~complex=\n"
                     "service:2=\n"
                     "~complex=\n"
                     "*service:1=com.example.ftp\n"
                     "status=0\n"
                     "*service:2=com.example.ssh\n"
                     "status=1\n"
                     "-\n"
                     "+Apps=\n"
                     "app:1=\n"
                     "~complex=\n"
                     "*app:1=com.example.player\n"
                     "status=1\n"
                     "-\n"
                     "-\n"));
}

TEST(Firewall, ListsNoRulesWhenEverythingIsBlocked) {
  EXPECT_EQ(collected_firewall({{
                {kState, kBlocked},
                {"spfirewall_services/item0/_name", "com.example.ftp"},
                {"spfirewall_stealthenabled", "No"},
                {"spfirewall_loggingenabled", "Yes"},
            }}),
            firewall("*Firewall=\nstatus=2\nstealth-mode=0\nfw-log=1\n"));
}

TEST(Firewall, ListsNoRulesWhenEverythingIsAllowed) {
  EXPECT_EQ(collected_firewall({{
                {kState, "spfirewall_globalstate_allow_all"},
                {"spfirewall_applications/item0/_name", "com.example.player"},
            }}),
            firewall("*Firewall=\nstatus=0\n"));
}

TEST(Firewall, ReportsNoStatusItDoesNotKnow) {
  EXPECT_EQ(
      collected_firewall({{{kState, "spfirewall_globalstate_off"}, {"spfirewall_loggingenabled", "No"}}}),
      firewall("*Firewall=\nfw-log=0\n"));
  EXPECT_EQ(collected_firewall({{{"spfirewall_loggingenabled", "Yes"}}}), firewall("*Firewall=\nfw-log=1\n"));
  EXPECT_EQ(collected_firewall({{{kState, 1}}}), "*Snapshot=\n");
}

TEST(Firewall, AcceptsOnlyCapitalNoAsNo) {
  EXPECT_EQ(collected_firewall({{
                {"spfirewall_stealthenabled", "no"},
                {"spfirewall_loggingenabled", ""},
            }}),
            firewall("*Firewall=\nstealth-mode=1\nfw-log=1\n"));
}

TEST(Firewall, KeepsRulesThatLackTheirNameOrValue) {
  EXPECT_EQ(collected_firewall({{
                {kState, kLimited},
                {"spfirewall_services/item0/value", "spfirewall_block_all"},
                {"spfirewall_services/item1/_name", "com.example.ssh"},
            }}),
            firewall("+Firewall=\n"
                     "status=1\n"
                     "+Services=\n"
                     "service:1=\n"
                     "~complex=\n"
                     "service:2=\n"
                     "~complex=\n"
                     "*service:1=\n"
                     "status=0\n"
                     "*service:2=com.example.ssh\n"
                     "status=1\n"
                     "-\n"
                     "-\n"));
}

TEST(Firewall, ReplacesTheFactsOfAnEarlierItem) {
  EXPECT_EQ(collected_firewall({
                {{kState, kLimited}, {"spfirewall_services/item0/_name", "first"}},
                {{kState, kLimited},
                 {"spfirewall_services/item0/_name", "second"},
                 {"spfirewall_services/item0/value", "spfirewall_block_all"}},
            }),
            firewall("+Firewall=\n"
                     "status=1\n"
                     "+Services=\n"
                     "service:1=\n"
                     "~complex=\n"
                     "*service:1=second\n"
                     "status=0\n"
                     "-\n"
                     "-\n"));
}

TEST(Firewall, WritesNothingWithoutItems) {
  InventoryTree profiler = empty_profiler();
  EXPECT_EQ(collected(collect_firewall, profiler), "*Snapshot=\n");
  EXPECT_EQ(collected_firewall({}), "*Snapshot=\n");
}

}  // namespace
