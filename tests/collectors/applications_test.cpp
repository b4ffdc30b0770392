#include "collectors/applications.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

std::string applications_of(std::initializer_list<Item> items) {
  InventoryTree profiler = profiler_with("SPApplicationsDataType", items);
  return collected(collect_applications, profiler);
}

std::string software(const std::string& lines) { return "+Snapshot=\n+Software=\n" + lines + "-\n-\n"; }

constexpr char kUnknownVersion[] = "version=\n~type=unknown\n";
constexpr char kUnknownDate[] = "inst-date=\n~type=unknown\n";
constexpr char kUnknownRuntime[] = "runtime-environment=\n~type=unknown\n";
constexpr char kUnknownWidth[] = "64bit-app=\n~type=unknown\n";

// An application without any key.
std::string unknown_application(int number) {
  return "*Soft:" + std::to_string(number) + "=\n" + kUnknownVersion + kUnknownDate + kUnknownRuntime +
         kUnknownWidth;
}

TEST(Applications, WritesEveryFactOfEach) {
  EXPECT_EQ(software("*Soft:1=TextEdit\nversion=1.6\ninst-date=20110112\nruntime-environment=arch_x86\n"
                     "info=1.6, Copyright\n64bit-app=1\nlocation=/Applications/TextEdit.app\n"
                     "*Soft:2=Preview\nversion=5.0.3\ninst-date=20120118\nruntime-environment=arch_ppc\n"
                     "location=/Applications/Preview.app\n"),
            applications_of({{{"_name", "TextEdit"},
                              {"has64BitIntelCode", "yes"},
                              {"info", "1.6, Copyright"},
                              {"lastModified", "20110112153045.000000+060"},
                              {"path", "/Applications/TextEdit.app"},
                              {"runtime_environment", "arch_x86"},
                              {"version", "1.6"}},
                             {{"_name", "Preview"},
                              {"has64BitIntelCode", "no"},
                              {"lastModified", "20120118153045.000000+060"},
                              {"path", "/Applications/Preview.app"},
                              {"runtime_environment", "arch_ppc"},
                              {"version", "5.0.3"}}}));
}

TEST(Applications, MarksWhatIsNotReportedAsUnknown) {
  EXPECT_EQ(software("*Soft:1=Tool\n" + std::string(kUnknownVersion) + kUnknownDate + kUnknownRuntime +
                     kUnknownWidth + "location=/Tool.app\n"),
            applications_of({{{"_name", "Tool"}, {"path", "/Tool.app"}}}));
}

TEST(Applications, CountsEveryItem) {
  EXPECT_EQ(software(unknown_application(1) + unknown_application(2)), applications_of({{}, {}}));
}

TEST(Applications, KeepsTheDayOfADateInTheProfilerTreeToo) {
  InventoryTree profiler =
      profiler_with("SPApplicationsDataType", {{{"lastModified", "20110112153045.000000+060"}}});
  collected(collect_applications, profiler);
  EXPECT_NE(tree_text(profiler).find("lastModified=20110112\n"), std::string::npos);
}

TEST(Applications, KeepsAShortDateWhole) {
  const std::string lines = software("*Soft:1=\n" + std::string(kUnknownVersion) + "inst-date=2011\n" +
                                     kUnknownRuntime + kUnknownWidth);
  EXPECT_EQ(applications_of({{{"lastModified", "2011"}}}), lines);
}

TEST(Applications, SaysNothingOfTheWidthForOtherAnswersThanYes) {
  const std::string lines =
      software("*Soft:1=\n" + std::string(kUnknownVersion) + kUnknownDate + kUnknownRuntime);
  EXPECT_EQ(applications_of({{{"has64BitIntelCode", "no"}}}), lines);
  EXPECT_EQ(applications_of({{{"has64BitIntelCode", ""}}}), lines);
}

TEST(Applications, CopiesValuesInTheirKind) {
  EXPECT_EQ(software("*Soft:1=3\nversion=7\n" + std::string(kUnknownDate) +
                     "runtime-environment=1\ninfo=a\rb\n" + kUnknownWidth + "location=2\n"),
            applications_of(
                {{{"_name", 3}, {"version", 7}, {"runtime_environment", 1}, {"info", "a\rb"}, {"path", 2}}}));
}

TEST(Applications, TreatsValuesOfTheWrongKindAsUnknown) {
  EXPECT_EQ(software(unknown_application(1)), applications_of({{{"_name/item0", "a"},
                                                                {"version/item0", "1"},
                                                                {"lastModified", 20110112},
                                                                {"runtime_environment/a", "b"},
                                                                {"info/item0", "c"},
                                                                {"has64BitIntelCode", 1},
                                                                {"path/item0", "/"}}}));
}

TEST(Applications, WritesNothingWithoutItsDataType) {
  InventoryTree empty = empty_profiler();
  EXPECT_EQ(collected(collect_applications, empty), "*Snapshot=\n");
  EXPECT_EQ(applications_of({}), "*Snapshot=\n");
}

TEST(Applications, GivesTheTreeThatFullPathsWouldGive) {
  InventoryTree profiler = empty_profiler();
  InventoryTree expected = empty_snapshot();
  for (int i = 1; i <= 300; ++i) {
    const std::string name = "Application " + std::to_string(i % 7);
    add_item(profiler, "SPApplicationsDataType", {{"_name", name.c_str()}, {"version", i}});
    const std::string path = "/Software/Soft:" + std::to_string(i);
    const auto set_unknown = [&](const char* attribute) {
      expected.set_attribute((path + attribute).c_str(), text_value(""), "type", "unknown");
    };
    expected.set_tag_value(path.c_str(), text_value(name.c_str()));
    expected.set_attribute((path + "/version").c_str(), Value(int64_t{i}));
    for (const char* attribute : {"/inst-date", "/runtime-environment", "/64bit-app"}) set_unknown(attribute);
  }
  EXPECT_EQ(tree_text(expected), collected(collect_applications, profiler));
}

}  // namespace
