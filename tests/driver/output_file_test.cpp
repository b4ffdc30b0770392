#include "driver/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "driver/base/new_file.h"
#include "support/temporary_directory.h"

namespace {

namespace fs = std::filesystem;

const std::string kName = "MAC_001B63AA10FE.inv";
const std::string kSecondName = "MAC_001B63AA10FE(1).inv";

// Each test works in a folder of its own.
class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() { fs::current_path(directory_.file("")); }
  ~OutputFileTest() override { fs::current_path(before_); }

  static std::vector<std::string> files() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(".")) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  const fs::path before_ = fs::current_path();
  const TemporaryDirectory directory_;
};

using Names = std::vector<std::string>;

OutputFile mac() { return OutputFile("mac", "00-1B-63-AA-10-FE"); }

std::string name_of(const std::string& machine, const char* address = "00-1B-63-AA-10-FE") {
  return OutputFile(machine.c_str(), address).name();
}

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

void create(const std::string& name, const char* content = "mine") { std::ofstream(name) << content; }

bool write_inventory(const char* path) {
  return write_new_file(path, reinterpret_cast<const unsigned char*>("inventory"), 9);
}

// --- the name ---

TEST_F(OutputFileTest, IsNamedAfterTheMachineInCapitalsAndItsHardwareAddress) {
  EXPECT_EQ(name_of("office-mac"), "OFFICE-MAC_001B63AA10FE.inv");
  EXPECT_EQ(name_of("Zo\xC3\xAB's Mac"), "ZO\xC3\xAB'S MAC_001B63AA10FE.inv");
}

TEST_F(OutputFileTest, IsNamedWithoutWhatIsMissing) {
  EXPECT_EQ(name_of("mac", nullptr), "MAC_.inv");
  EXPECT_EQ(name_of("mac", ""), "MAC_.inv");
  EXPECT_EQ(name_of(""), "_001B63AA10FE.inv");
}

TEST_F(OutputFileTest, HasNoSlashThatLeadsToAnotherFolder) {
  EXPECT_EQ(name_of("either/or"), "EITHER_OR_001B63AA10FE.inv");
  EXPECT_EQ(name_of("../up"), ".._UP_001B63AA10FE.inv");
  EXPECT_EQ(name_of("/"), "__001B63AA10FE.inv");
  EXPECT_EQ(name_of("mac", "00-1B/63"), "MAC_001B_63.inv");
}

TEST_F(OutputFileTest, KeepsDotsThatLeadNowhere) {
  EXPECT_EQ(name_of("."), "._001B63AA10FE.inv");
  EXPECT_EQ(name_of(".."), ".._001B63AA10FE.inv");
}

TEST_F(OutputFileTest, CutsTheMachinesNameWhereItsOwnWouldBeTooLong) {
  const std::string end = "_001B63AA10FE.inv";  // 17 bytes, so that 238 are left
  EXPECT_EQ(name_of(std::string(238, 'A')), std::string(238, 'A') + end);
  EXPECT_EQ(name_of(std::string(239, 'A')), std::string(238, 'A') + end);
  EXPECT_EQ(name_of(std::string(100000, 'A')), std::string(238, 'A') + end);
}

TEST_F(OutputFileTest, CutsBetweenTwoCharacters) {
  const std::string end = "_001B63AA10FE.inv";
  for (const std::string character : {"\xC3\xAB", "\xE2\x82\xAC", "\xF0\x9F\x96\xA5"}) {
    for (const std::string start : {"", "A", "AA", "AAA"}) {
      const size_t fitting = (238 - start.size()) / character.size();
      EXPECT_EQ(name_of(start + repeated(character, 200)),
                start + repeated(character, static_cast<int>(fitting)) + end);
    }
  }
  EXPECT_EQ(name_of(std::string(300, '\x80')), end);  // no character starts anywhere
}

TEST_F(OutputFileTest, KeepsRoomForTheNumberOfALongName) {
  const std::string end = "_001B63AA10FE.inv";
  create(std::string(238, 'A') + end);
  EXPECT_EQ(name_of(std::string(238, 'A')), std::string(235, 'A') + "_001B63AA10FE(1).inv");
}

TEST_F(OutputFileTest, CutsOffAnAddressThatIsNotOne) {
  EXPECT_EQ(name_of("mac", std::string(64, '1').c_str()), "MAC_" + std::string(64, '1') + ".inv");
  EXPECT_EQ(name_of("mac", std::string(1000, '1').c_str()), "MAC_" + std::string(64, '1') + ".inv");
}

TEST_F(OutputFileTest, TakesTheFirstFreeNumber) {
  create(kName);
  for (int n = 1; n <= 12; ++n) {
    const std::string expected = "MAC_001B63AA10FE(" + std::to_string(n) + ").inv";
    EXPECT_EQ(mac().name(), expected);
    create(expected);
  }
  fs::remove("MAC_001B63AA10FE(7).inv");
  EXPECT_EQ(mac().name(), "MAC_001B63AA10FE(7).inv");
}

TEST_F(OutputFileTest, TreatsAnyExistingPathAsTaken) {
  fs::create_symlink("nowhere", kName);
  EXPECT_EQ(mac().name(), kSecondName);
  fs::create_directory(kSecondName);
  EXPECT_EQ(mac().name(), "MAC_001B63AA10FE(2).inv");
  ASSERT_EQ(mkfifo("MAC_001B63AA10FE(2).inv", 0), 0);
  EXPECT_EQ(mac().name(), "MAC_001B63AA10FE(3).inv");
}

TEST_F(OutputFileTest, HasItsPathInTheWorkingDirectory) {
  EXPECT_EQ(mac().path(), fs::current_path().string() + "/" + kName);
}

TEST_F(OutputFileTest, UsesItsNameAsAPathWhereTheDirectoryIsUnknown) {
  const fs::path gone = fs::current_path() / "gone";
  fs::create_directory(gone);
  fs::current_path(gone);
  fs::remove(gone);
  OutputFile file = mac();
  EXPECT_EQ(file.path(), kName);
  EXPECT_FALSE(file.save(write_inventory));
}

// --- saving ---

// What a scan must do holds for each way by itself.
class EachClaim : public OutputFileTest, public testing::WithParamInterface<size_t> {
 protected:
  const std::vector<NameClaim> claims = {name_claims().at(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(OutputFile, EachClaim, testing::Range(size_t{0}, name_claims().size()));

TEST_P(EachClaim, LeavesTheWholeFileReadableByItsOwnerOnly) {
  OutputFile file = mac();
  EXPECT_TRUE(file.save(write_inventory, claims));
  EXPECT_EQ(files(), Names{kName});
  EXPECT_EQ(file_bytes(kName), "inventory");
  EXPECT_EQ(fs::status(kName).permissions(), fs::perms(0600));
}

TEST_P(EachClaim, HasTheFileWholeBeforeItGetsTheName) {
  OutputFile file = mac();
  EXPECT_TRUE(file.save(
      [](const char* path) {
        EXPECT_EQ(files(), Names{});
        EXPECT_EQ(path, ".velkaro-scanner-" + std::to_string(getpid()) + ".part");
        return write_inventory(path);
      },
      claims));
}

TEST_P(EachClaim, TriesTheNextNameWhenItsOwnIsTakenMeanwhile) {
  OutputFile file = mac();
  EXPECT_TRUE(file.save(
      [](const char* path) {
        create(kName);
        fs::create_symlink("nowhere", kSecondName);
        fs::create_directory("MAC_001B63AA10FE(2).inv");
        return write_inventory(path);
      },
      claims));
  EXPECT_EQ(file.name(), "MAC_001B63AA10FE(3).inv");
  EXPECT_EQ(file_bytes(file.name()), "inventory");
  EXPECT_EQ(file_bytes(kName), "mine");
  EXPECT_FALSE(fs::exists("nowhere"));
  EXPECT_EQ(files().size(), 4u);
}

TEST_P(EachClaim, NeverReplacesTheTemporaryFileOfAScanThatWasKilled) {
  const std::string leftover = ".velkaro-scanner-" + std::to_string(getpid());
  create(leftover + ".part");
  fs::create_symlink(leftover + ".part", leftover + "-1.part");
  EXPECT_TRUE(mac().save(write_inventory, claims));
  EXPECT_EQ(file_bytes(leftover + ".part"), "mine");
  EXPECT_EQ(file_bytes(kName), "inventory");
  EXPECT_EQ(files(), (Names{leftover + "-1.part", leftover + ".part", kName}));
}

TEST_P(EachClaim, LeavesNothingWhereTheFileCannotBeNamed) {
  EXPECT_FALSE(mac().save(
      [](const char* path) {
        EXPECT_TRUE(write_inventory(path));
        return fs::remove(path);
      },
      claims));
  EXPECT_EQ(files(), Names{});
}

TEST_F(OutputFileTest, IsNotSavedWhenItCannotBeWritten) {
  int attempts = 0;
  EXPECT_FALSE(mac().save([&attempts](const char*) {
    ++attempts;
    errno = ENOSPC;
    return false;
  }));
  EXPECT_EQ(attempts, 1);
  EXPECT_EQ(files(), Names{});
}

// What a file system answers that knows no such way.
int refusal = EACCES;
int refuse_because(const char*, const char*) {
  errno = refusal;
  return -1;
}

TEST_F(OutputFileTest, IsNotLeftUnderItsTemporaryNameWhenNoWayLeadsToTheOther) {
  EXPECT_FALSE(mac().save(write_inventory, {refuse_because, refuse_because}));
  EXPECT_EQ(files(), Names{});
}

TEST_F(OutputFileTest, GetsItsNameAnotherWayWhereAFileSystemRefusesOne) {
  for (const int reason : {EPERM, ENOTSUP, EOPNOTSUPP, ENOSYS, EMLINK, EINVAL, EACCES}) {
    refusal = reason;
    EXPECT_TRUE(mac().save(write_inventory, {refuse_because, refuse_because, name_claims().back()}));
    EXPECT_EQ(files(), Names{kName});
    fs::remove(kName);
  }
}

TEST_F(OutputFileTest, GivesUpOnAClaimThatCallsEveryNameTaken) {
  refusal = EEXIST;
  EXPECT_FALSE(mac().save(write_inventory, {refuse_because, refuse_because}));
  EXPECT_TRUE(mac().save(write_inventory, {refuse_because, name_claims().front()}));
  EXPECT_EQ(files(), Names{kName});
}

// As in a folder where files may be made, but neither renamed nor removed.
int leave_a_placeholder(const char*, const char* name) {
  create(name, "");
  errno = EACCES;
  return -1;
}

TEST_F(OutputFileTest, LeavesOnePlaceholderAtMostInAFolderThatTakesButDoesNotGive) {
  EXPECT_FALSE(mac().save(write_inventory, {leave_a_placeholder}));
  EXPECT_EQ(files(), Names{kName});
}

int calls = 0;
int count_calls(const char*, const char*) {
  ++calls;
  return 0;
}

TEST_F(OutputFileTest, TriesNoOtherWayWhenANameIsTaken) {
  calls = 0;
  EXPECT_TRUE(mac().save(
      [](const char* path) {
        create(kName);
        return write_inventory(path);
      },
      {name_claims().front(), count_calls}));
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(files(), (Names{kSecondName, kName}));
}

}  // namespace
