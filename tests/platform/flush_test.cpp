#include "platform/flush.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "support/temporary_directory.h"

namespace {

TEST(Flush, ReachesTheDiskWithAFile) {
  const TemporaryDirectory directory;
  const int file = open(directory.file("file").c_str(), O_WRONLY | O_CREAT, 0600);
  EXPECT_EQ(write(file, "x", 1), 1);
  EXPECT_TRUE(flush_to_disk(file));
  close(file);
}

TEST(Flush, FailsWhereNothingIsWrittenToADisk) {
  EXPECT_FALSE(flush_to_disk(-1));
  EXPECT_EQ(errno, EBADF);
}

}  // namespace
