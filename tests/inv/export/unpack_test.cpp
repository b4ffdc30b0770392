#include "inv/export/unpack.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "inv/maker.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> paths(const std::vector<inv::UnpackedFile>& files) {
  std::vector<std::string> all;
  for (const inv::UnpackedFile& file : files) all.push_back(file.path);
  return all;
}

using Paths = std::vector<std::string>;

TEST(Unpack, GivesHeaderAndTexts) {
  const auto files = inv::unpack(*maker::open(maker::file()));
  EXPECT_EQ(paths(files), (Paths{"header.txt", "section-0-snapshot.zxml", "section-1-asset.zxml"}));
  EXPECT_EQ(files[0].content.substr(0, 4), "[H]\n");
  EXPECT_EQ(files[1].content, maker::text_of(*maker::snapshot()));
}

TEST(Unpack, MakesAMachineOfADebugFile) {
  const std::string output =
      "<array>\n<dict><key>_dataType</key><string>SPOneDataType</string></dict>\n</array>\n</plist>\n";
  const auto files = inv::unpack(*maker::open(maker::debug_file(output)));
  EXPECT_EQ(paths(files), (Paths{"header.txt", "section-0-asset.zxml", "profiler/full.plist",
                                 "profiler/SPOneDataType.plist", "computer-name.txt"}));
  EXPECT_EQ(files[2].content, output);
  EXPECT_EQ(files[4].content, "Office Mac\n");
}

std::string data_type(const std::string& name, const std::string& content = "") {
  return "<dict><key>_dataType</key><string>" + name + "</string>" + content + "</dict>\n";
}

std::string profiler_output(const std::string& types) { return "<array>\n" + types + "</array>\n</plist>\n"; }

TEST(Unpack, LetsNoDataTypeTakeThePlaceOfTheWholeOutput) {
  const std::string output = profiler_output(data_type("full") + data_type("FULL") +
                                             data_type("SPOne", "<a/>") + data_type("spone"));
  const auto files = inv::unpack(*maker::open(maker::debug_file(output)));
  EXPECT_EQ(paths(files), (Paths{"header.txt", "section-0-asset.zxml", "profiler/full.plist",
                                 "profiler/SPOne.plist", "computer-name.txt"}));
  EXPECT_EQ(files[2].content, output);
  EXPECT_NE(files[3].content.find("<a/>"), std::string::npos);
}

TEST(Unpack, StopsAfterTheMaximumNumberOfFiles) {
  std::string types;
  for (int i = 0; i < 3000; ++i) types += data_type("SP" + std::to_string(i));
  const auto files = inv::unpack(*maker::open(maker::debug_file(profiler_output(types))));
  EXPECT_GT(files.size(), inv::kMostUnpackedFiles);
  EXPECT_LT(files.size(), inv::kMostUnpackedFiles + 10);
}

TEST(Unpack, KeepsTheBytesOfWhatCannotBeRead) {
  std::string file = maker::file();
  file[40] = static_cast<char>(file[40] ^ 0x55);
  const auto files = inv::unpack(*maker::open(file));
  EXPECT_EQ(paths(files), (Paths{"header.txt", "section-0.stored", "section-1-asset.zxml"}));
  EXPECT_EQ(files[1].content, file.substr(0, files[1].content.size()));
}

class WriteFolderTest : public testing::Test {
 protected:
  ~WriteFolderTest() override { fs::remove_all(folder); }
  const fs::path folder = fs::path(testing::TempDir()) / ("write_folder_test." + std::to_string(getpid()));
  std::string error;
};

TEST_F(WriteFolderTest, MakesTheFolderAndItsFiles) {
  EXPECT_TRUE(inv::write_folder(folder, {{"a", "1"}, {"b/c", "2"}}, &error)) << error;
  EXPECT_EQ(fs::file_size(folder / "a"), 1u);
  EXPECT_EQ(fs::file_size(folder / "b" / "c"), 1u);
}

TEST_F(WriteFolderTest, RefusesAFolderThatHoldsSomething) {
  fs::create_directories(folder);
  std::ofstream(folder / "mine") << "x";
  EXPECT_FALSE(inv::write_folder(folder, {{"a", "1"}}, &error));
  EXPECT_EQ(error, "is not an empty folder");
  EXPECT_FALSE(fs::exists(folder / "a"));
}

TEST_F(WriteFolderTest, WritesNothingOfTooManyFiles) {
  std::vector<inv::UnpackedFile> files(1000, {"a", "1"});
  EXPECT_TRUE(inv::write_folder(folder, files, &error)) << error;
  fs::remove_all(folder);
  files.push_back({"b", "1"});
  EXPECT_FALSE(inv::write_folder(folder, files, &error));
  EXPECT_EQ(error, "would hold more than 1000 files");
  EXPECT_FALSE(fs::exists(folder));
}

TEST_F(WriteFolderTest, SaysWhyAFolderCannotBeMade) {
  EXPECT_FALSE(inv::write_folder(folder / "x" / "y", {}, &error));
  EXPECT_EQ(error, "cannot be created: No such file or directory");
}

}  // namespace
