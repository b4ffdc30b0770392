#include "inv/export/database.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "inv/maker.h"

namespace {

namespace fs = std::filesystem;

class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest() { fs::remove(path); }
  ~DatabaseTest() override { fs::remove(path); }

  void load(const std::vector<std::string>& files) {
    inv::Database database;
    ASSERT_TRUE(database.open(path)) << database.error();
    ASSERT_TRUE(database.begin());
    for (const std::string& file : files) ASSERT_TRUE(database.add(*maker::open(file))) << database.error();
    ASSERT_TRUE(database.commit());
  }

  // All rows of a query: cells with "|" between, rows with line feeds.
  std::string query(const std::string& sql) {
    sqlite3* handle = nullptr;
    std::string rows;
    sqlite3_open(path.c_str(), &handle);
    char* error = nullptr;
    sqlite3_exec(
        handle, sql.c_str(),
        [](void* result, int count, char** cells, char**) {
          for (int i = 0; i < count; ++i) {
            static_cast<std::string*>(result)->append(i > 0 ? "|" : "").append(cells[i] ? cells[i] : "NULL");
          }
          static_cast<std::string*>(result)->append("\n");
          return 0;
        },
        &rows, &error);
    EXPECT_EQ(error, nullptr) << error;
    sqlite3_free(error);
    sqlite3_close(handle);
    return rows;
  }

  const std::string path =
      fs::path(testing::TempDir()) / ("database_test." + std::to_string(getpid()) + ".db");
};

TEST_F(DatabaseTest, HoldsMachinesAndTheirFacts) {
  load({maker::file()});
  EXPECT_EQ(query("SELECT machine, timestamp, name, scanned, file FROM machines"),
            "C02TEST00001|20120118153045.000000+120|Office Mac|2012-01-18 15:30:45 +02:00|test.inv\n");
  EXPECT_EQ(query("SELECT count(*), min(position), max(position) FROM facts"), "26|1|26\n");
  EXPECT_EQ(
      query("SELECT element, name, value, unit, base_value FROM facts WHERE path LIKE '%partition:1/size'"),
      "/Storage/Logical-disks/partition:1|size|499.50|GB|499500000000\n");
  EXPECT_EQ(query("SELECT element, name FROM facts WHERE path = '/timestamp'"), "/|timestamp\n");
}

TEST_F(DatabaseTest, RecordsWhoSigned) {
  const auto load_signed = [this](const std::string& signer) {
    inv::Database database;
    ASSERT_TRUE(database.open(path) && database.begin()) << database.error();
    ASSERT_TRUE(database.add(*maker::open(maker::file()), signer)) << database.error();
    ASSERT_TRUE(database.commit());
  };
  load_signed("imac@studio.example.com");
  EXPECT_EQ(query("SELECT signed_by FROM latest"), "imac@studio.example.com\n");
  load_signed("");
  EXPECT_EQ(query("SELECT signed_by FROM machines"), "\n");
}

TEST_F(DatabaseTest, LoadingAgainChangesNothing) {
  load({maker::file(), maker::file()});
  const std::string facts = query("SELECT path, value FROM facts ORDER BY position");
  load({maker::file({0, Layout::split_plain, HeaderForm::plain})});
  EXPECT_EQ(query("SELECT count(*) FROM machines"), "1\n");
  EXPECT_EQ(query("SELECT path, value FROM facts ORDER BY position"), facts);
}

TEST_F(DatabaseTest, KeepsEveryScanOfAMachineAndKnowsTheLatest) {
  const auto scan = [](const std::string& timestamp) {
    return maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\ntimestamp=" + timestamp + "\nhostname=A\n");
  };
  load({scan("20120118"), scan("20130118"), scan("20110118")});
  EXPECT_EQ(query("SELECT count(*) FROM machines"), "3\n");
  EXPECT_EQ(query("SELECT timestamp FROM latest"), "20130118\n");
}

TEST_F(DatabaseTest, ViewsGiveARowForEachElement) {
  load({maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=A\n+Software=\n*Soft:1=Safari\nversion=5\nlocation=/"
      "S\n*Soft:2=Mail\n"
      "version=4\n-\n+Storage=\n+Physical-disks=\n*HDD:1=\nmodel=X\nsize=500\n~base-value="
      "500107862016\nserial=S1\n-\n"
      "+Logical-disks=\n*partition:1=HD\nmount-point=/\nsize=499.50\nfree=100.25\nused%=79\n-\n-\n+Memory=\n"
      "*Memory-slot:1=\nused=1\ncapacity=2048\n*Memory-slot:2=\nused=0\n-\n+Video=\n+Monitors=\n+Monitor:1=?"
      "X|A\n"
      "model=A\nmain-monitor=1\n*max-visible-image-size=\ndiagonal=27\n-\n*Monitor:2=?Y|B\nmodel=B\n-\n-\n"
      "+User-accounts=\n*usr-acc:jane=jane\nid=501\nfullname=Jane\n-\n-\n")});
  EXPECT_EQ(query("SELECT machine, name, version, location FROM software ORDER BY name"),
            "A|Mail|4|NULL\nA|Safari|5|/S\n");
  EXPECT_EQ(query("SELECT disk, model, size_gb, size_bytes, serial FROM disks"),
            "HDD:1|X|500|500107862016|S1\n");
  EXPECT_EQ(query("SELECT name, mount_point, size_gb, free_gb, used_percent FROM volumes"),
            "HD|/|499.5|100.25|79\n");
  EXPECT_EQ(query("SELECT slot, used, capacity_mb FROM memory"), "1|1|2048\n2|0|NULL\n");
  EXPECT_EQ(query("SELECT model, main, diagonal_inches FROM displays ORDER BY model"),
            "A|1|27\nB|NULL|NULL\n");
  EXPECT_EQ(query("SELECT name, id, full_name FROM accounts"), "jane|501|Jane\n");
}

TEST_F(DatabaseTest, TextIsValidWhateverTheFileHolds) {
  load({maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=caf\xE9'; DROP TABLE facts; --\n")});
  EXPECT_EQ(query("SELECT value FROM facts"), "caf\uFFFD'; DROP TABLE facts; --\n");
}

TEST_F(DatabaseTest, RefusesWhatIsNotItsOwn) {
  std::ofstream(path) << std::string(4096, 'x');
  inv::Database no_database;
  EXPECT_FALSE(no_database.open(path));
  EXPECT_EQ(no_database.error(), "file is not a database");
  fs::remove(path);
  query("CREATE TABLE mine (x)");
  inv::Database other;
  EXPECT_FALSE(other.open(path));
  EXPECT_EQ(other.error(), "is a database of another program, or of another version of inv");
  fs::remove(path);
  query("CREATE TABLE machines (x); PRAGMA user_version = 1");
  inv::Database older;
  EXPECT_FALSE(older.open(path));
  EXPECT_EQ(older.error(), "is a database of another program, or of another version of inv");
  inv::Database nowhere;
  EXPECT_FALSE(nowhere.open("/nowhere/at/all.db"));
  EXPECT_EQ(nowhere.error(), "unable to open database file");
}

}  // namespace
