#include "driver/base/new_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temporary_directory.h"

namespace {

namespace fs = std::filesystem;

bool write_text(const std::string& path, const std::string& text) {
  return write_new_file(path.c_str(), reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

// An existing path is distinguished from every other reason.
void expect_taken(const std::string& path) {
  errno = 0;
  EXPECT_FALSE(write_text(path, "new"));
  EXPECT_EQ(errno, EEXIST);
}

TEST(NewFile, HoldsWhatWasWritten) {
  const TemporaryDirectory directory;
  for (const std::string& text : {std::string(), std::string("a\0b\n", 4), std::string(3000000, 'x')}) {
    const std::string path = directory.file(std::to_string(text.size()));
    EXPECT_TRUE(write_text(path, text));
    EXPECT_EQ(file_bytes(path), text);
  }
}

TEST(NewFile, IsForItsOwnerOnlyWhateverTheMask) {
  const TemporaryDirectory directory;
  for (const mode_t mask : {mode_t{0000}, mode_t{0022}, mode_t{0077}}) {
    const mode_t before = umask(mask);
    const std::string path = directory.file(std::to_string(mask));
    EXPECT_TRUE(write_text(path, "x"));
    umask(before);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
  }
}

TEST(NewFile, IsNotHandedToTheToolsThatAreRun) {
  const TemporaryDirectory directory;
  const int descriptor = create_new_file(directory.file("file").c_str());
  ASSERT_GE(descriptor, 0);
  EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
  close(descriptor);
}

TEST(NewFile, NeverReplacesAFile) {
  const TemporaryDirectory directory;
  const std::string path = directory.file("file");
  std::ofstream(path) << "old";
  expect_taken(path);
  EXPECT_EQ(file_bytes(path), "old");
}

TEST(NewFile, NeverFollowsALink) {
  const TemporaryDirectory directory;
  const std::string target = directory.file("target");
  std::ofstream(target) << "old";
  fs::create_symlink(target, directory.file("link"));
  fs::create_symlink(directory.file("nowhere"), directory.file("dangling"));
  fs::create_symlink("/dev/null", directory.file("device"));
  for (const char* link : {"link", "dangling", "device"}) {
    expect_taken(directory.file(link));
    EXPECT_TRUE(fs::is_symlink(directory.file(link)));
  }
  EXPECT_EQ(file_bytes(target), "old");
  EXPECT_FALSE(fs::exists(directory.file("nowhere")));
}

TEST(NewFile, NeitherWaitsAtAPipeNorTakesAFoldersPlace) {
  const TemporaryDirectory directory;
  const std::string pipe = directory.file("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  expect_taken(pipe);
  EXPECT_TRUE(fs::is_fifo(pipe));
  fs::create_directory(directory.file("folder"));
  expect_taken(directory.file("folder"));
}

TEST(NewFile, NeedsAFolder) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(write_text(directory.file("missing/file"), "x"));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_TRUE(fs::is_empty(directory.file("")));
}

// Run in a child of the test: there the user may give up being root, to whom every folder is writable.
[[noreturn]] void write_as_ordinary_user(const std::string& path) {
  if (geteuid() == 0 && setuid(65534) != 0) std::_Exit(1);
  std::_Exit(!write_text(path, "x") && errno == EACCES ? 0 : 2);
}

TEST(NewFileDeathTest, NeedsAFolderThatMayBeWritten) {
  const TemporaryDirectory directory;
  fs::permissions(directory.file(""), fs::perms(0555));
  EXPECT_EXIT(write_as_ordinary_user(directory.file("file")), testing::ExitedWithCode(0), "");
  fs::permissions(directory.file(""), fs::perms(0755));
  EXPECT_TRUE(fs::is_empty(directory.file("")));
}

// Run in a child of the test: files may not grow beyond 100,000 bytes there, as on a disk that gets full. The
// status is 0 for a file that was written, else the reason.
[[noreturn]] void write_with_little_space(const std::string& path, size_t length,
                                          void (*signal_handler)(int) = SIG_DFL) {
  std::signal(SIGXFSZ, signal_handler);
  const rlimit space = {100000, 100000};
  if (setrlimit(RLIMIT_FSIZE, &space) != 0) std::_Exit(255);
  std::_Exit(write_text(path, std::string(length, 'x')) ? 0 : errno);
}

TEST(NewFileDeathTest, IsRemovedWhenItCannotBeWrittenWhole) {
  const TemporaryDirectory directory;
  for (const size_t length : {size_t{100001}, size_t{1000000}}) {
    EXPECT_EXIT(write_with_little_space(directory.file("file"), length), testing::ExitedWithCode(EFBIG), "");
    EXPECT_TRUE(fs::is_empty(directory.file("")));
  }
}

TEST(NewFileDeathTest, MayJustFit) {
  const TemporaryDirectory directory;
  EXPECT_EXIT(write_with_little_space(directory.file("file"), 100000), testing::ExitedWithCode(0), "");
  EXPECT_EQ(fs::file_size(directory.file("file")), 100000u);
}

TEST(NewFile, LeavesTheSignalOfALimitOnFilesAsItWas) {
  const TemporaryDirectory directory;
  const auto before = std::signal(SIGXFSZ, SIG_DFL);
  EXPECT_TRUE(write_text(directory.file("file"), "x"));
  EXPECT_EQ(std::signal(SIGXFSZ, before), SIG_DFL);
}

}  // namespace
