#include "collectors/post_process.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/collectors/item_lists.h"
#include "tests/collectors/tool_helpers.h"

namespace {

InventoryTree small_profiler() {
  InventoryTree profiler = profiler_with("SPApplicationsDataType", {{{"_name", "TextEdit"}}});
  add_item(profiler, "SPSoftwareDataType", {{"os_version", "Mac OS X 10.6.8 (10K549)"}});
  add_item(profiler, "SPNetworkDataType", {{"_name", "Ethernet"}, {"type", "Ethernet"}});
  add_item(profiler, "SPMemoryDataType", {{"dimm_status", "empty"}});
  add_item(profiler, "SPHardwareDataType", {{"packages", 1}, {"number_processors", 2}});
  profiler.set_attribute("/Processes/process:1/pid", text_value("1"));
  return profiler;
}

std::vector<std::string> elements(const InventoryTree& tree) {
  std::vector<std::string> names;
  for (const auto& element : tree.top().children()) names.push_back(element->name());
  return names;
}

// Something for every collector.
InventoryTree full_profiler() {
  InventoryTree profiler = small_profiler();
  add_item(profiler, "SPFirewallDataType", {{"spfirewall_globalstate", "spfirewall_globalstate_allow_all"}});
  add_item(profiler, "SPUSBDataType", holding("_items", {{{"_name", "Mouse"}}}));
  add_item(profiler, "SPPrintersDataType", {{"_name", "Printer"}, {"default", "yes"}});
  add_item(profiler, "SPSerialATADataType", holding("_items", {{{"smart_status", "Verified"}}}));
  add_item(profiler, "SPDisplaysDataType", {{"sppci_model", "Graphics 9400"}});
  return profiler;
}

TEST(PostProcess, RunsTheCollectorsInTheirOrder) {
  FakeTools tools;
  tools.write("ls", "echo jdoe");
  write_printing_tool(tools, "dscl", "x\nNFSHomeDirectory: /\nRecordName: jdoe\nRecordType: t\n");
  InventoryTree profiler = full_profiler();
  InventoryTree snapshot = empty_snapshot();
  post_process(snapshot, profiler, false);
  const std::vector<std::string> order = {"System",    "Processors",  "Memory",  "Video",         "Storage",
                                          "Network",   "Peripherals", "OS",      "User-accounts", "Software",
                                          "Processes", "Environment", "Security"};
  EXPECT_EQ(elements(snapshot), order);
  const Tag* peripherals = snapshot.top().find_child("Peripherals");
  EXPECT_EQ(peripherals->child_at(0)->name(), "Printers");
  EXPECT_EQ(peripherals->child_at(1)->name(), "USB");
}

TEST(PostProcess, CopiesTheProcessesWhole) {
  InventoryTree profiler = small_profiler();
  InventoryTree snapshot = empty_snapshot();
  post_process(snapshot, profiler, false);
  EXPECT_NE(tree_text(snapshot).find("+Processes=\n*process:1=\npid=1\n-\n"), std::string::npos);
  EXPECT_NE(profiler.top().find_child("Processes"), nullptr);
}

// What is written, without what depends on the machine that runs the test.
std::vector<std::string> elements_without(bool Omissions::*word, const FakeTools& tools) {
  tools.write("ls", keeping_arguments(tools) + "echo jdoe");
  tools.write("dscl", keeping_arguments(tools));
  tools.write("env", keeping_arguments(tools) + "echo A=1");
  Omissions omitted;
  omitted.*word = true;
  InventoryTree profiler = empty_profiler();
  InventoryTree snapshot = empty_snapshot();
  post_process(snapshot, profiler, false, omitted);
  return elements(snapshot);
}

TEST(PostProcess, AsksForNoAccountsThatAreLeftOut) {
  const FakeTools tools;
  EXPECT_EQ(elements_without(&Omissions::accounts, tools), std::vector<std::string>({"Environment"}));
  EXPECT_EQ(tools.read("arguments"), "<>");
}

TEST(PostProcess, AsksForNoEnvironmentThatIsLeftOut) {
  const FakeTools tools;
  EXPECT_EQ(elements_without(&Omissions::environment, tools), std::vector<std::string>());
  EXPECT_EQ(tools.read("arguments"), "<-1></Users/><.><-read></users/jdoe>");
}

TEST(PostProcess, WritesTheEnvironmentWithoutItsValues) {
  const FakeTools tools;
  EXPECT_EQ(elements_without(&Omissions::values, tools), std::vector<std::string>({"Environment"}));
  EXPECT_EQ(tools.read("arguments"), "<-1></Users/><.><-read></users/jdoe>");
}

std::string output_of(bool verbose, const Omissions& omitted = {}) {
  InventoryTree profiler = small_profiler();
  InventoryTree snapshot = empty_snapshot();
  testing::internal::CaptureStdout();
  post_process(snapshot, profiler, verbose, omitted);
  return testing::internal::GetCapturedStdout();
}

TEST(PostProcess, PrintsEveryStepWhenVerbose) {
  EXPECT_EQ(output_of(true),
            "IV. PostProcess>>>\n"
            "1...done\n2...done\n3...done\n4...done\n5...done\n6...done\n7...done\n"
            "8...done\n9...done\n10...done\n11...done\n12...done\n13...done\n14...done\n"
            "IV. PostProcess End.\n");
}

TEST(PostProcess, PrintsTheStepsOfWhatIsLeftOutToo) {
  Omissions omitted;
  omitted.processes = omitted.accounts = omitted.environment = true;
  EXPECT_EQ(output_of(true, omitted), output_of(true));
}

TEST(PostProcess, IsSilentOtherwise) { EXPECT_EQ(output_of(false), ""); }

TEST(PostProcess, NeedsNoDataTypeAtAll) {
  InventoryTree profiler = empty_profiler();
  InventoryTree snapshot = empty_snapshot();
  post_process(snapshot, profiler, false);
  EXPECT_NE(snapshot.top().find_child("Environment"), nullptr);
  EXPECT_EQ(snapshot.top().find_child("Processors"), nullptr);
  EXPECT_EQ(snapshot.top().find_child("Processes"), nullptr);
}

}  // namespace
