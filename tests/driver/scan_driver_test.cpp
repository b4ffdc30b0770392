#include "driver/scan_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "fake_tools.h"
#include "support/temporary_directory.h"
#include "zxml/container.h"
#include "zxml/inflated.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

namespace fs = std::filesystem;

// Each test scans, in a folder of its own, a Mac that reports its name and no more.
class ScanDriverTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* tool : {"system_profiler", "ps", "env", "ls", "dscl", "ioreg", "diskutil"})
      tools_.write(tool, "echo >> '" + tools_.file("runs") + "'; echo x");
    tools_.write("scutil", "echo studio");
    fs::current_path(folder_.file(""));
  }
  void TearDown() override { fs::current_path("/"); }

  void scan(const ScanContext& context, bool debug = false) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    ScanDriver(context, false, debug, nullptr, "");
    printed_ = testing::internal::GetCapturedStdout();
    complaints_ = testing::internal::GetCapturedStderr();
  }

  std::string saved_bytes() const {
    const fs::directory_iterator files(".");
    return files == fs::directory_iterator() ? "" : file_bytes(files->path().string());
  }

  FakeTools tools_;
  TemporaryDirectory folder_;
  std::string printed_;
  std::string complaints_;
};

TEST_F(ScanDriverTest, DoesNothingWhileItIsSuspended) {
  ScanContext context;
  context.suspended = 1;
  context.log_enabled = 1;
  for (const bool debug : {false, true}) {
    scan(context, debug);
    EXPECT_EQ(printed_ + complaints_, "");
    EXPECT_FALSE(fs::exists(tools_.file("runs")));
    EXPECT_TRUE(fs::is_empty("."));
  }
}

TEST_F(ScanDriverTest, SavesTheFileInTheByteOrderOfItsContext) {
  for (const bool debug : {false, true}) {
    for (const int32_t most_significant_first : {0, 1}) {
      scan({most_significant_first, 0, 0}, debug);
      const std::string bytes = saved_bytes();
      ASSERT_GT(bytes.size(), 14u);
      // The sections are shorter than 64 KiB, so the offset after them has six zeros.
      const std::string offset = bytes.substr(bytes.size() - 14, 8);
      EXPECT_EQ(offset.substr(most_significant_first ? 0 : 2, 6), std::string(6, '\0')) << debug;
      EXPECT_NE(offset.substr(most_significant_first ? 6 : 0, 2), std::string(2, '\0')) << debug;
      fs::remove(fs::directory_iterator(".")->path());
    }
  }
}

TEST_F(ScanDriverTest, SavesTheSnapshotAndThenTheSummaryBothCompressed) {
  scan({});
  const std::string bytes = saved_bytes();
  size_t snapshot_length = 0;
  EXPECT_THAT(inflated_first(bytes, &snapshot_length), HasSubstr("Snapshot=\n"));
  const std::string end_of_section(kWholeCompressedEnd);
  EXPECT_EQ(bytes.substr(snapshot_length, end_of_section.size()), end_of_section);
  const std::string rest = bytes.substr(snapshot_length + end_of_section.size());
  size_t summary_length = 0;
  EXPECT_THAT(inflated_first(rest, &summary_length), HasSubstr("AssetInfo=\n"));
  EXPECT_EQ(rest.substr(summary_length, end_of_section.size()), end_of_section);
}

// An operator at a terminal gets the debug file too, not only a script.
TEST_F(ScanDriverTest, SavesTheProfilersOwnBytesInADebugRun) {
  scan({}, true);
  const std::string bytes = saved_bytes();
  size_t summary_length = 0;
  EXPECT_THAT(inflated_first(bytes, &summary_length), HasSubstr("error-message=Debug scan\n"));
  const std::string end_of_section(kWholeCompressedEnd);
  size_t output_length = 0;
  EXPECT_EQ(inflated_first(bytes.substr(summary_length + end_of_section.size()), &output_length), "x\n");
}

TEST_F(ScanDriverTest, CountsOnUntilANameIsFree) {
  scan({});
  const std::string name = fs::directory_iterator(".")->path().filename().string();
  const std::string stem = name.substr(0, name.size() - 4);
  for (int number = 1; number <= 12; ++number) {
    scan({});
    EXPECT_TRUE(fs::exists(stem + "(" + std::to_string(number) + ").inv")) << number;
  }
}

// The removed folder no longer has a path, so only the file's name is shown.
TEST_F(ScanDriverTest, FinishesItsLogWhenTheFileCannotBeSaved) {
  fs::remove(fs::current_path());
  ScanContext context;
  context.log_enabled = 1;
  scan(context);
  EXPECT_THAT(printed_, HasSubstr("\nVI. Generating File name....done\nVII. Saving to file....done\n"));
  EXPECT_THAT(printed_, EndsWith("------End Log------\n"));
  const std::string refused = complaints_.substr(complaints_.rfind("Cannot create file :"));
  EXPECT_THAT(refused, EndsWith("_.inv\n"));
  EXPECT_EQ(refused.find('/'), std::string::npos) << refused;
}

}  // namespace
