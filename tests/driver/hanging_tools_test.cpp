// A scan whose tools neither print nor end: it goes on to its end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "driver/base/command.h"
#include "driver/scan_driver.h"
#include "fake_tools.h"
#include "support/temporary_directory.h"

namespace {

using testing::MatchesRegex;

class HangingTools : public testing::Test {
 protected:
  HangingTools() { set_longest_silence(std::chrono::milliseconds(150)); }
  ~HangingTools() override {
    set_longest_silence(kLongestSilence);
    std::filesystem::current_path(before_);
  }

  // What a scan prints to standard error; what it prints to standard output is left in `printed`.
  std::string scan(bool debug) {
    std::filesystem::current_path(directory.file(""));
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    ScanDriver(ScanContext(), true, debug, nullptr, "");
    printed = testing::internal::GetCapturedStdout();
    return testing::internal::GetCapturedStderr();
  }

  FakeTools tools;
  TemporaryDirectory directory;
  std::string printed;

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

constexpr char kNotWaitedFor[] = "Gave up waiting for: ";

TEST_F(HangingTools, AreEachReportedAndLeaveTheScanAFile) {
  tools.write("system_profiler", "[ \"$4\" != SPNetworkVolumeDataType ] || exec sleep 1000; echo short");
  for (const char* tool : {"ps", "ioreg", "ls", "env"}) tools.write(tool, "exec sleep 1000");
  const std::string line = kNotWaitedFor;
  const std::string processes = "(" + line + "ps -p[0-9]+ [^\n]*\n)*(No longer run: ps [^\n]*\n)?";
  EXPECT_THAT(scan(false),
              MatchesRegex(line + "system_profiler -detailLevel full -xml SPNetworkVolumeDataType\n" + line +
                           "ioreg [^\n]*\n" + processes + line + "ls -1 /Users/\n" + line + "env\n"));
  EXPECT_THAT(printed, MatchesRegex("10%\n(.*\n)*100%\n>>>.*\\.inv\n"));
}

TEST_F(HangingTools, LeaveADebugRunItsFile) {
  tools.write("system_profiler", "echo '<plist><array>'; exec sleep 1000");
  EXPECT_EQ(scan(true), kNotWaitedFor + std::string("system_profiler -detailLevel full -xml\n"));
  ASSERT_THAT(printed, MatchesRegex(">>>.*\\.inv\n"));
  EXPECT_NE(file_bytes(directory.file(printed.substr(3, printed.size() - 4))), "");
}

}  // namespace
