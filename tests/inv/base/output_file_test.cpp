#include "inv/base/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

// A device must never be replaced by a file, such as by a superuser's "-o /dev/null"; a pipe has a reader who
// waits.
TEST_F(OutputFileTest, WritesIntoWhatIsNoFile) {
  const fs::path pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_TRUE(inv::write_file(pipe, "new"));
  char read_back[4] = {};
  EXPECT_EQ(read(reader, read_back, sizeof read_back), 3);
  EXPECT_STREQ(read_back, "new");
  close(reader);
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(files(), 2);
}

TEST_F(OutputFileTest, ReplacesTheFileThatALinkLeadsTo) {
  const fs::path link = folder / "link";
  fs::create_symlink("file", link);
  EXPECT_TRUE(inv::write_file(link, "new"));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(content(), "new");
  EXPECT_EQ(files(), 2);
}

TEST_F(OutputFileTest, RefusesFoldersAndTheEmptyName) {
  EXPECT_FALSE(inv::write_file(folder, "new"));
  EXPECT_EQ(errno, EISDIR);
  EXPECT_FALSE(inv::write_file("", "new"));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(files(), 1);
}

}  // namespace
