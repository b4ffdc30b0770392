#include "collectors/platform_uuid.h"

#include <gtest/gtest.h>

#include "tests/collectors/replayed_tools.h"

namespace {

TEST(PlatformUuid, IsTheFourthPieceBetweenQuotes) {
  const ReplayedTools tools("imac-10.6");
  EXPECT_STREQ("51A7C0DE-0106-5A8B-9C3D-2F0000001068", query_platform_uuid().get());
}

TEST(PlatformUuid, IsEmptyWithoutTheTool) {
  const ScopedVariable path("PATH", "/nowhere");
  EXPECT_STREQ("", query_platform_uuid().get());
}

}  // namespace
