#include "extended/sources.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "driver/base/command.h"
#include "driver/base/run_journal.h"
#include "fake_tools.h"

namespace {

using std::chrono::milliseconds;

constexpr char kPrintCommandLine[] = "echo \"${0##*/} $*\"";
const char* const kTools[] = {"sw_vers", "sysctl", "fdesetup", "csrutil", "spctl", "profiles", "ls"};
constexpr size_t kTypeCount = 6;

// A profiler that logs each data type it is asked for and prints one item of it; the other tools print their
// command lines.
class ExtendedSources : public testing::Test {
 protected:
  ExtendedSources() {
    tools_.write("system_profiler", "echo \"$4\" >>\"$0.log\"; " + item("$4"));
    for (const char* tool : kTools) tools_.write(tool, kPrintCommandLine);
  }

  static std::string item(const std::string& type) {
    return std::string("cat <<END\n") + kPrologue + "<dict><key>_dataType</key><string>" + type +
           "</string><key>_items</key><array><dict><key>_name</key><string>" + type +
           " item</string></dict></array></dict>\n" + kEpilogue + "END\n";
  }

  static Sources fetch(const SeriesLimits& limits = SeriesLimits()) {
    return fetch_sources(limits, [](milliseconds) {});
  }
  std::string asked_types() const { return tools_.read("system_profiler.log"); }
  static std::string name_in(const InventoryTree& tree, const char* type) {
    const Tag* data_type = tree.top().find_child(type);
    const Tag* items = data_type ? data_type->find_child("_items") : nullptr;
    const Attribute* name = items ? items->children().at(0)->find_attribute("_name") : nullptr;
    return name ? name->value().text() : "none";
  }

  FakeTools tools_;
};

TEST_F(ExtendedSources, RunOneAfterAnother) {
  const RunJournal journal;
  fetch();
  EXPECT_EQ(asked_types(),
            "SPStorageDataType\nSPNVMeDataType\nSPUSBHostDataType\nSPThunderboltDataType\n"
            "SPInstallHistoryDataType\nSPiBridgeDataType\n");
  std::vector<std::string> commands;
  for (const CommandRecord& record : journal.commands()) commands.push_back(record.command);
  EXPECT_EQ(commands,
            (std::vector<std::string>{"system_profiler -detailLevel full -xml SPStorageDataType",
                                      "system_profiler -detailLevel full -xml SPNVMeDataType",
                                      "system_profiler -detailLevel full -xml SPUSBHostDataType",
                                      "system_profiler -detailLevel full -xml SPThunderboltDataType",
                                      "system_profiler -detailLevel full -xml SPInstallHistoryDataType",
                                      "system_profiler -detailLevel full -xml SPiBridgeDataType",
                                      "sw_vers 2>&1", "sysctl hw machdep.cpu kern.hv_vmm_present 2>&1",
                                      "fdesetup status 2>&1", "csrutil status 2>&1", "spctl --status 2>&1",
                                      "profiles status -type enrollment 2>&1",
                                      "ls -d /Library/Apple/usr/libexec/oah/libRosettaRuntime 2>&1"}));
}

TEST_F(ExtendedSources, KeepEachOutputApart) {
  const ToolOutputs tools = fetch().tools;
  EXPECT_STREQ(tools.sw_vers.get(), "sw_vers \n");
  EXPECT_STREQ(tools.sysctl.get(), "sysctl hw machdep.cpu kern.hv_vmm_present\n");
  EXPECT_STREQ(tools.fdesetup.get(), "fdesetup status\n");
  EXPECT_STREQ(tools.csrutil.get(), "csrutil status\n");
  EXPECT_STREQ(tools.spctl.get(), "spctl --status\n");
  EXPECT_STREQ(tools.profiles.get(), "profiles status -type enrollment\n");
  EXPECT_STREQ(tools.rosetta.get(), "ls -d /Library/Apple/usr/libexec/oah/libRosettaRuntime\n");
}

TEST_F(ExtendedSources, AcceptAnAnswerOnStandardError) {
  tools_.write("spctl", "echo 'assessments enabled' >&2");
  EXPECT_STREQ(fetch().tools.spctl.get(), "assessments enabled\n");
}

TEST_F(ExtendedSources, DistinguishAMissingToolFromOneThatPrintsNothing) {
  tools_.write("csrutil", "exit 127");
  tools_.write("fdesetup", "exit 0");
  const ToolOutputs tools = fetch().tools;
  EXPECT_EQ(tools.csrutil, nullptr);
  EXPECT_STREQ(tools.fdesetup.get(), "");
}

TEST_F(ExtendedSources, RetryADataTypeWithoutOutputOnce) {
  tools_.write("system_profiler", "echo \"$4\" >>\"$0.log\"");
  const Sources sources = fetch();
  EXPECT_EQ(sources.types.size(), kTypeCount);
  EXPECT_EQ(asked_types().substr(0, 51), "SPStorageDataType\nSPStorageDataType\nSPNVMeDataType\n");
  EXPECT_EQ(asked_types().find("SPNVMeDataType\nSPNVMeDataType\nSPUSBHost"), 36u);
}

TEST_F(ExtendedSources, DoNotRetryAfterSilence) {
  tools_.write("system_profiler", "echo \"$4\" >>\"$0.log\"; exec sleep 100");
  set_longest_silence(milliseconds(50));
  fetch();
  set_longest_silence(kLongestSilence);
  EXPECT_EQ(asked_types().substr(0, 33), "SPStorageDataType\nSPNVMeDataType\n");
}

TEST_F(ExtendedSources, KeepToTheLimits) {
  SeriesLimits limits;
  limits.one_output = 100;
  limits.runs = 2;
  const Sources sources = fetch(limits);
  EXPECT_EQ(sources.types[0].length, 100u);
  EXPECT_EQ(sources.types[1].length, 100u);
  EXPECT_EQ(sources.types[2].length, 0u);
  EXPECT_STREQ(sources.tools.csrutil.get(), "csrutil status\n");
}

TEST_F(ExtendedSources, CutOffAToolThatPrintsForever) {
  tools_.write("sysctl", "exec yes");
  const ToolOutputs tools = fetch().tools;
  EXPECT_EQ(std::string(tools.sysctl.get()).size(), 1u << 20);
}

TEST_F(ExtendedSources, AreReadIntoOneTree) {
  const auto tree = read_additional_types(1, fetch().types);
  EXPECT_EQ(name_in(*tree, "SPStorageDataType"), "SPStorageDataType item");
  EXPECT_EQ(name_in(*tree, "SPiBridgeDataType"), "SPiBridgeDataType item");
  EXPECT_EQ(tree->top().children().size(), kTypeCount);
}

TEST_F(ExtendedSources, SurviveDamageToOneOfThem) {
  tools_.write("system_profiler", "case $4 in SPNVMe*) echo garbage ;; SPThunder*) " + item("$4") +
                                      " printf '\\377' ;; *) " + item("$4") + " ;; esac");
  const RunJournal journal;
  const auto tree = read_additional_types(1, fetch().types);
  EXPECT_EQ(name_in(*tree, "SPStorageDataType"), "SPStorageDataType item");
  EXPECT_EQ(name_in(*tree, "SPNVMeDataType"), "none");
  EXPECT_EQ(name_in(*tree, "SPThunderboltDataType"), "SPThunderboltDataType item");
  EXPECT_FALSE(journal.commands()[0].salvaged);
  EXPECT_FALSE(journal.commands()[1].salvaged);
  EXPECT_TRUE(journal.commands()[3].salvaged);
}

TEST_F(ExtendedSources, AreLabelledWithTheirCommands) {
  const Sources sources = fetch();
  const std::vector<std::string> outputs = labelled_outputs(sources);
  ASSERT_EQ(outputs.size(), kTypeCount + std::size(kTools));
  EXPECT_EQ(outputs[1], "system_profiler -detailLevel full -xml SPNVMeDataType\n" +
                            std::string(sources.types[1].text.get(), sources.types[1].length));
  EXPECT_EQ(outputs[kTypeCount], "sw_vers 2>&1\nsw_vers \n");
}

TEST_F(ExtendedSources, AreNotLabelledWhenEmpty) {
  tools_.write("sw_vers", "exit 0");
  tools_.write("csrutil", "exit 127");
  tools_.write("system_profiler", "exit 0");
  EXPECT_EQ(labelled_outputs(fetch()).size(), std::size(kTools) - 2);
}

}  // namespace
