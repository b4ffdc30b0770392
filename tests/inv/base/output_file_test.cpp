#include "inv/base/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
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
  static mode_t mode_of(const fs::path& file) {
    struct stat status = {};
    stat(file.c_str(), &status);
    return status.st_mode & 07777;
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

// Writing fails after the first bytes, as on a full disk.
class FullDisk {
 public:
  FullDisk() : old_action_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const rlimit limit = {16, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    signal(SIGXFSZ, old_action_);
  }

 private:
  rlimit old_limit_ = {};
  void (*old_action_)(int);
};

TEST_F(OutputFileTest, ReportsAPartialWriteAndLeavesTheTargetAlone) {
  bool committed = true;
  bool written = true;
  {
    const FullDisk full;
    inv::OutputFile output(path);
    std::fputs("more than sixteen bytes", output.stream());
    committed = output.commit();
    written = inv::write_file(path, std::string(1 << 20, 'x'));
  }
  EXPECT_FALSE(committed);
  EXPECT_FALSE(written);
  EXPECT_EQ(content(), "old");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFileTest, ReportsThatADeviceIsFull) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  EXPECT_FALSE(inv::write_file("/dev/full", "new"));
}

TEST_F(OutputFileTest, MakesAFileThatOnlyItsOwnerReads) {
  const mode_t mask = umask(0);
  EXPECT_TRUE(inv::write_file(folder / "new", "x"));
  umask(mask);
  EXPECT_EQ(mode_of(folder / "new"), 0600u);
}

TEST_F(OutputFileTest, KeepsTheModeOfTheFileItReplaces) {
  const fs::path link = folder / "link";
  fs::create_symlink("file", link);
  chmod(path.c_str(), 0664);
  EXPECT_TRUE(inv::write_file(link, "new"));
  EXPECT_EQ(mode_of(path), 0664u);
}

TEST_F(OutputFileTest, WritesUnderANameThatIsAnotherEachTime) {
  const auto name_beside = [&] {
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.path() != path) return entry.path().string();
    }
    return std::string();
  };
  std::string first;
  {
    const inv::OutputFile output(path);
    first = name_beside();
    EXPECT_EQ(mode_of(first) & 0077, mode_of(path) & 0077);
  }
  const inv::OutputFile output(path);
  EXPECT_NE(first, "");
  EXPECT_NE(name_beside(), first);
}

TEST_F(OutputFileTest, RecognisesAFileByAnyPathOrLinkToIt) {
  fs::create_symlink("file", folder / "link");
  fs::create_hard_link(path, folder / "twin");
  std::ofstream(folder / "other") << "old";
  for (const char* name : {"file", "link", "twin", "../"}) {
    const fs::path other =
        std::string(name) == "../" ? folder / ".." / folder.filename() / "file" : folder / name;
    EXPECT_TRUE(inv::is_same_file(other, path)) << name;
  }
  EXPECT_FALSE(inv::is_same_file(folder / "other", path));
  EXPECT_FALSE(inv::is_same_file(folder / "absent", folder / "absent"));
  EXPECT_FALSE(inv::is_same_file("/dev/null", "/dev/null"));
}

TEST_F(OutputFileTest, HasNoStreamWhereNoFileCanBeMade) {
  inv::OutputFile output(folder / "missing" / "file");
  EXPECT_FALSE(output.stream());
  EXPECT_FALSE(output.commit());
}

// A device must never be replaced by a file, for example by root's "-o /dev/null"; a pipe has a waiting
// reader.
TEST_F(OutputFileTest, WritesDirectlyIntoWhatIsNotAFile) {
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
