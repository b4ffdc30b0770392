#include "platform/rename.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "support/temporary_directory.h"

namespace fs = std::filesystem;

namespace {

TEST(RenameExclusively, GivesAFileAnotherName) {
  const TemporaryDirectory directory;
  std::ofstream(directory.file("old")) << "content";
  EXPECT_EQ(rename_exclusively(directory.file("old").c_str(), directory.file("new").c_str()), 0);
  EXPECT_EQ(file_bytes(directory.file("new")), "content");
  EXPECT_FALSE(fs::exists(directory.file("old")));
}

TEST(RenameExclusively, TakesNobodysName) {
  const TemporaryDirectory directory;
  std::ofstream(directory.file("old")) << "content";
  std::ofstream(directory.file("file")) << "mine";
  fs::create_symlink("nowhere", directory.file("link"));
  for (const char* taken : {"file", "link"}) {
    errno = 0;
    EXPECT_EQ(rename_exclusively(directory.file("old").c_str(), directory.file(taken).c_str()), -1);
    EXPECT_EQ(errno, EEXIST);
  }
  EXPECT_EQ(file_bytes(directory.file("file")), "mine");
  EXPECT_EQ(file_bytes(directory.file("old")), "content");
}

}  // namespace
