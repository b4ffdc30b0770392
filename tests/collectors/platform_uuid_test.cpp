#include "collectors/platform_uuid.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/collectors/tool_helpers.h"

namespace {

TEST(PlatformUuid, IsTheFourthPieceBetweenQuotes) {
  const FakeTools tools;
  write_file(tools, "registry",
             "+-o iMac11,1  <class IOPlatformExpertDevice, id 0x100000110, registered>\n"
             "    {\n"
             "      \"IOPlatformSerialNumber\" = \"SERIAL\"\n"
             "      \"IOPlatformUUID\" = \"51A7C0DE-0106-5A8B-9C3D-2F0000001068\"\n"
             "      \"manufacturer\" = <\"Apple Inc.\">\n"
             "    }\n");
  tools.write("ioreg", keeping_arguments(tools) + "cat '" + tools.file("registry") + "'");
  EXPECT_STREQ(query_platform_uuid().get(), "51A7C0DE-0106-5A8B-9C3D-2F0000001068");
  EXPECT_EQ(tools.read("arguments"), "<-rd1><-c><IOPlatformExpertDevice>");
}

TEST(PlatformUuid, IsEmptyWhenNoneIsReported) {
  const FakeTools tools;
  for (const char* script : {"exit 1", "kill -9 $$", "echo '    \"IOPlatformSerialNumber\" = \"SERIAL\"'"}) {
    tools.write("ioreg", script);
    EXPECT_STREQ(query_platform_uuid().get(), "") << script;
  }
}

TEST(PlatformUuid, GivesIoregTwoSecondsOfWork) {
  const FakeTools tools;
  tools.write("ioreg", "printf '\"IOPlatformUUID\" = \"%s\"\\n' \"$(ulimit -t)\"");
  EXPECT_STREQ(query_platform_uuid().get(), "2");
}

TEST(PlatformUuid, EndsWhenTheRegistryDoesNot) {
  const FakeTools tools;
  tools.write("ioreg", "exec yes '\"IOPlatformUUID\" = \"00000000\"'");
  testing::internal::CaptureStderr();
  EXPECT_EQ(std::strlen(query_platform_uuid().get()), 65536u);
  testing::internal::GetCapturedStderr();
}

}  // namespace
