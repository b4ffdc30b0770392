#include "driver/base/tool_path.h"

#include <gtest/gtest.h>

namespace {

constexpr char kAll[] = "/usr/bin:/bin:/usr/sbin:/sbin";

TEST(CompleteToolPath, AppendsTheDirectoriesThatAreLackingInTheirOrder) {
  EXPECT_EQ(complete_tool_path("/opt/tools"), "/opt/tools:/usr/bin:/bin:/usr/sbin:/sbin");
  EXPECT_EQ(complete_tool_path("/usr/bin:/bin"), "/usr/bin:/bin:/usr/sbin:/sbin");
  EXPECT_EQ(complete_tool_path("/sbin:/opt/tools:/bin"), "/sbin:/opt/tools:/bin:/usr/bin:/usr/sbin");
}

TEST(CompleteToolPath, KeepsAPathThatHasThemAll) {
  EXPECT_EQ(complete_tool_path(kAll), kAll);
  EXPECT_EQ(complete_tool_path("/sbin:/a:/usr/sbin:/bin:/usr/bin"), "/sbin:/a:/usr/sbin:/bin:/usr/bin");
}

TEST(CompleteToolPath, WithoutAnyPathIsTheSystemsDirectories) {
  EXPECT_EQ(complete_tool_path(nullptr), kAll);
  EXPECT_EQ(complete_tool_path(""), kAll);
}

TEST(CompleteToolPath, KnowsADirectoryInAnotherSpelling) {
  EXPECT_EQ(complete_tool_path("/usr/bin/:/bin//://usr//sbin:/sbin"), "/usr/bin/:/bin//://usr//sbin:/sbin");
}

TEST(CompleteToolPath, MistakesNoOtherDirectoryForOneOfThem) {
  EXPECT_EQ(complete_tool_path("/usr/bin2:usr/bin:/USR/BIN:/usr/bin/x:/"),
            std::string("/usr/bin2:usr/bin:/USR/BIN:/usr/bin/x:/:") + kAll);
}

// An empty element is the working directory: programs there are run only when the caller wants that.
TEST(CompleteToolPath, KeepsEmptyElementsAndAddsNone) {
  EXPECT_EQ(complete_tool_path("/a:"), std::string("/a::") + kAll);
  EXPECT_EQ(complete_tool_path(":/a"), std::string(":/a:") + kAll);
  EXPECT_EQ(complete_tool_path("/a::/b"), std::string("/a::/b:") + kAll);
  EXPECT_EQ(complete_tool_path(":"), std::string("::") + kAll);
}

}  // namespace
