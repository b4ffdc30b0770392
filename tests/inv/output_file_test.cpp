#include "inv/output_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() {
    fs::create_directories(folder);
    std::ofstream(path) << "old";
  }
  ~OutputFileTest() override { fs::remove_all(folder); }

  std::string content() const {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }
  std::ptrdiff_t files() const {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  }

  const fs::path folder = fs::path(testing::TempDir()) / ("output_file_test." + std::to_string(getpid()));
  const fs::path path = folder / "file";
};

TEST_F(OutputFileTest, TakesTheTargetsPlaceWhenCommitted) {
  inv::OutputFile output(path);
  ASSERT_TRUE(output.stream());
  std::fputs("new", output.stream());
  EXPECT_EQ(content(), "old");
  EXPECT_TRUE(output.commit());
  EXPECT_EQ(content(), "new");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFileTest, LeavesTheTargetAloneWhenNotCommitted) {
  {
    inv::OutputFile output(path);
    std::fputs("new", output.stream());
  }
  EXPECT_EQ(content(), "old");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFileTest, HasNoStreamWhereNoFileCanBeMade) {
  inv::OutputFile output(folder / "missing" / "file");
  EXPECT_FALSE(output.stream());
  EXPECT_FALSE(output.commit());
}

}  // namespace
