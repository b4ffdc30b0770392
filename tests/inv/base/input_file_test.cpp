#include "inv/base/input_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

class InputFileTest : public testing::Test {
 protected:
  ~InputFileTest() override { fs::remove(path); }

  void write(const std::string& content) { std::ofstream(path, std::ios::binary) << content; }

  const std::string path = fs::path(testing::TempDir()) / ("input_file_test." + std::to_string(getpid()));
  std::string error;
};

TEST_F(InputFileTest, GivesEveryByte) {
  for (const size_t length : std::initializer_list<size_t>{0, 1, 65535, 65536, 65537, 300000}) {
    std::string content(length, 'x');
    if (length > 0) content.back() = '\0';
    write(content);
    EXPECT_EQ(inv::read_file(path, 1 << 20, &error), content) << length;
  }
}

TEST_F(InputFileTest, TakesAsMuchAsTheLimitAndNoMore) {
  write("12345");
  EXPECT_EQ(inv::read_file(path, 5, &error), "12345");
  EXPECT_FALSE(inv::read_file(path, 4, &error));
  EXPECT_EQ(error, "is larger than 4 bytes");
}

TEST_F(InputFileTest, SaysWhyAFileCannotBeRead) {
  EXPECT_FALSE(inv::read_file(path + ".missing", 5, &error));
  EXPECT_EQ(error, "cannot be read: No such file or directory");
  EXPECT_FALSE(inv::read_file(testing::TempDir(), 5, &error));
  EXPECT_EQ(error, "cannot be read: Is a directory");
}

}  // namespace
