#include "inv/export/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "inv/base/sha256.h"
#include "inv/maker.h"

namespace {

namespace fs = std::filesystem;

using inv::Loaded;
using testing::Each;
using testing::ElementsAre;

class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest() { fs::remove(path); }
  ~DatabaseTest() override { fs::remove(path); }

  void load(const std::vector<std::string>& files) {
    inv::Database database;
    ASSERT_TRUE(database.open(path)) << database.error();
    ASSERT_TRUE(database.begin());
    for (const std::string& file : files) {
      outcomes.push_back(database.add(*maker::open(file)));
      ASSERT_NE(outcomes.back(), Loaded::broken) << database.error();
    }
    ASSERT_TRUE(database.commit());
  }

  // All rows of a query: cells separated by "|", rows by line feeds.
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

  std::vector<Loaded> outcomes;
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

TEST_F(DatabaseTest, HoldsTheColumnsOfTheExport) {
  load({maker::file()});
  EXPECT_EQ(query("SELECT scan_id, scanned_at, damaged FROM machines"),
            inv::hexadecimal(inv::sha256(maker::file())) + "|2012-01-18T13:30:45Z|0\n");
  EXPECT_EQ(
      query("SELECT section, kind, element_index, number, typeof(number) FROM facts WHERE name = 'size'"),
      "snapshot|/Storage/Logical-disks/partition/size|1|499.5|real\n");
  EXPECT_EQ(
      query(
          "SELECT section, kind, element_index, number FROM facts WHERE path = 'AssetInfo/control/os-name'"),
      "asset|AssetInfo/control/os-name||NULL\n");
}

TEST_F(DatabaseTest, RecordsWhoSigned) {
  const auto load_signed = [this](const std::string& signer) {
    inv::Database database;
    ASSERT_TRUE(database.open(path) && database.begin()) << database.error();
    ASSERT_NE(database.add({inv::PreparedScan(*maker::open(maker::file())), signer}), Loaded::refused)
        << database.error();
    ASSERT_TRUE(database.commit());
  };
  load_signed("");
  EXPECT_EQ(query("SELECT signed_by FROM latest"), "\n");
  load_signed("imac@studio.example.com");
  EXPECT_EQ(query("SELECT signed_by FROM latest"), "imac@studio.example.com\n");
  load_signed("");
  EXPECT_EQ(query("SELECT signed_by FROM machines"), "imac@studio.example.com\n");
}

// A snapshot of this machine and time with this many other values.
std::string scan(const std::string& timestamp, int values = 0, const std::string& machine = "A") {
  std::string text = "\xEF\xBB\xBF?zxml\n+Snapshot=\ntimestamp=" + timestamp + "\n";
  for (int i = 0; i < values; ++i) text += "v" + std::to_string(i) + "=1\n";
  return maker::file_of_text(text + "+System=\n*Chassis=\nserial=" + machine + "\n-\n-\n");
}

// The same, and a second section that cannot be read.
std::string damaged(std::string file) {
  const size_t count = file.find("count=1");
  const size_t header = file.find("[H]");
  file.replace(count, 7, "count=2");
  file.insert(file.size() - 14,
              "[1]\noffset=0\nlength=" + std::to_string(header) + "\ntype=customdata\nID=rawdata\n");
  return file;
}

constexpr char kNoon[] = "20120118120000.000000+0";

TEST_F(DatabaseTest, AScanThatIsThereIsSkipped) {
  load({maker::file(), maker::file(), scan(kNoon)});
  const std::string facts = query("SELECT path, value FROM facts ORDER BY machine_id, position");
  load({scan(kNoon), maker::file()});
  EXPECT_THAT(outcomes,
              ElementsAre(Loaded::added, Loaded::skipped, Loaded::added, Loaded::skipped, Loaded::skipped));
  EXPECT_EQ(query("SELECT path, value FROM facts ORDER BY machine_id, position"), facts);
}

TEST_F(DatabaseTest, AnotherFileOfTheSameScanTakesItsPlace) {
  load({maker::file(), maker::file({0, Layout::split_plain, HeaderForm::plain})});
  EXPECT_THAT(outcomes, ElementsAre(Loaded::added, Loaded::replaced));
  EXPECT_EQ(query("SELECT count(*), (SELECT count(*) FROM facts) FROM machines"), "1|26\n");
}

TEST_F(DatabaseTest, TheSameMomentInAnotherZoneIsTheSameScan) {
  load({scan("20120118120000.000000+0"), scan("20120118140000.000000+120", 1),
        scan("20120118120000.000000+60")});
  EXPECT_THAT(outcomes, ElementsAre(Loaded::added, Loaded::replaced, Loaded::added));
}

TEST_F(DatabaseTest, AnotherMachineOfThatMomentStays) {
  load({scan(kNoon), scan(kNoon, 0, "B")});
  EXPECT_THAT(outcomes, ElementsAre(Loaded::added, Loaded::added));
}

TEST_F(DatabaseTest, ADamagedFileNeverTakesAWholeOnesPlace) {
  load({scan(kNoon, 1), damaged(scan(kNoon, 5))});
  EXPECT_THAT(outcomes, ElementsAre(Loaded::added, Loaded::skipped));
  EXPECT_EQ(query("SELECT damaged, (SELECT count(*) FROM facts) FROM machines"), "0|3\n");
}

TEST_F(DatabaseTest, ADamagedFileIsAddedAndMarkedWhereNothingBetterIs) {
  load({damaged(scan(kNoon, 2)), damaged(scan(kNoon, 1)), damaged(scan(kNoon, 3)),
        damaged(scan(kNoon, 3, "B"))});
  EXPECT_THAT(outcomes, ElementsAre(Loaded::added, Loaded::skipped, Loaded::replaced, Loaded::added));
  EXPECT_EQ(query("SELECT machine, damaged, (SELECT count(*) FROM facts WHERE machine_id = id) FROM machines "
                  "ORDER BY 1"),
            "A|1|5\nB|1|5\n");
  load({scan(kNoon)});
  EXPECT_EQ(outcomes.back(), Loaded::replaced);
  EXPECT_EQ(query("SELECT damaged FROM machines WHERE machine = 'A'"), "0\n");
}

TEST_F(DatabaseTest, KeepsEveryScanOfAMachineAndKnowsTheLatest) {
  // At 10:00 in Sydney it was still the day before in Los Angeles, and at 03:00 there ten hours later.
  load({scan("20120118100000.000000+600"), scan("20120118030000.000000-480"),
        scan("20110118235959.000000+0")});
  EXPECT_EQ(query("SELECT count(*) FROM machines"), "3\n");
  EXPECT_EQ(query("SELECT scanned_at FROM latest"), "2012-01-18T11:00:00Z\n");
}

TEST_F(DatabaseTest, AScanWithoutATimeIsKeptAndNeverTheLatest) {
  load({scan(kNoon), scan("tomorrow"), scan("tomorrow", 1), scan(""), scan("", 0, "B")});
  EXPECT_THAT(outcomes, Each(Loaded::added));
  EXPECT_EQ(query("SELECT count(*), count(scanned_at) FROM machines"), "5|1\n");
  EXPECT_EQ(query("SELECT machine, timestamp FROM latest"), std::string("A|") + kNoon + "\n");
}

TEST_F(DatabaseTest, AFileWithATextThatIsTooLongIsRefusedAlone) {
  const std::string large = maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=B\nvalue=" + std::string(5000, 'x') + "\n");
  inv::Database database;
  ASSERT_TRUE(database.open(path)) << database.error();
  database.limit_texts(4000);
  ASSERT_TRUE(database.begin());
  EXPECT_EQ(database.add(*maker::open(scan(kNoon, 2))), Loaded::added);
  EXPECT_EQ(database.add(*maker::open(large)), Loaded::refused);
  EXPECT_EQ(database.error(), "string or blob too big");
  EXPECT_EQ(database.add(*maker::open(scan(kNoon, 2, "C"))), Loaded::added);
  ASSERT_TRUE(database.commit()) << database.error();
  EXPECT_EQ(query("SELECT machine, (SELECT count(*) FROM facts WHERE machine_id = id) FROM machines"),
            "A|4\nC|4\n");
  EXPECT_EQ(query("SELECT count(*) FROM facts WHERE path IS NULL OR name = ''"), "0\n");
  EXPECT_EQ(query("PRAGMA foreign_key_check"), "");
}

std::vector<inv::Arrival> arrivals_of(const std::vector<std::string>& files) {
  std::vector<inv::Arrival> arrivals;
  for (const std::string& file : files) arrivals.push_back({inv::PreparedScan(*maker::open(file)), "S"});
  return arrivals;
}

std::vector<Loaded> fates(const std::vector<inv::Outcome>& outcomes) {
  std::vector<Loaded> loaded;
  for (const inv::Outcome& outcome : outcomes) loaded.push_back(outcome.loaded);
  return loaded;
}

TEST_F(DatabaseTest, ManyScansArePutInTogether) {
  inv::Database database;
  ASSERT_TRUE(database.open(path)) << database.error();
  std::vector<inv::Outcome> results;
  ASSERT_TRUE(database.add_all(arrivals_of({scan(kNoon), scan(kNoon, 2, "B"), scan(kNoon)}), results));
  EXPECT_THAT(fates(results), ElementsAre(Loaded::added, Loaded::added, Loaded::skipped));
  EXPECT_EQ(query("SELECT machine, signed_by FROM machines"), "A|S\nB|S\n");
  ASSERT_TRUE(database.add_all(arrivals_of({scan(kNoon, 1)}), results));
  EXPECT_THAT(fates(results), ElementsAre(Loaded::replaced));
  EXPECT_EQ(query("SELECT machine_id, count(*) FROM fact_values GROUP BY 1"), "2|4\n3|3\n");
  EXPECT_EQ(query("PRAGMA foreign_key_check"), "");
}

TEST_F(DatabaseTest, OneOfManyScansIsRefusedAlone) {
  const std::string large = maker::file_of_text(
      "\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=B\nnew=1\nvalue=" + std::string(5000, 'x') + "\n");
  inv::Database database;
  ASSERT_TRUE(database.open(path)) << database.error();
  database.limit_texts(4000);
  std::vector<inv::Outcome> results;
  ASSERT_TRUE(database.add_all(arrivals_of({scan(kNoon, 2), large, scan(kNoon, 2, "C")}), results));
  EXPECT_THAT(fates(results), ElementsAre(Loaded::added, Loaded::refused, Loaded::added));
  EXPECT_EQ(results[0].reason, "");
  EXPECT_EQ(results[1].reason, "string or blob too big");
  EXPECT_EQ(query("SELECT machine, (SELECT count(*) FROM facts WHERE machine_id = id) FROM machines"),
            "A|4\nC|4\n");
  EXPECT_EQ(query("SELECT count(*) FROM paths WHERE name = 'new'"), "0\n");
  EXPECT_EQ(query("PRAGMA foreign_key_check"), "");
}

TEST_F(DatabaseTest, NothingIsPutInWhereTheDatabaseTakesNothing) {
  inv::Database database;
  ASSERT_TRUE(database.open(path)) << database.error();
  query("DROP TABLE fact_values");
  std::vector<inv::Outcome> results;
  EXPECT_TRUE(database.add_all(arrivals_of({scan(kNoon)}), results));
  EXPECT_THAT(fates(results), ElementsAre(Loaded::refused));
  EXPECT_EQ(results[0].reason, "no such table: fact_values");
  EXPECT_EQ(query("SELECT count(*) FROM machines"), "0\n");
}

TEST_F(DatabaseTest, ANewFileHasLargePagesAndAnotherKeepsItsOwn) {
  load({scan(kNoon)});
  EXPECT_EQ(query("PRAGMA page_size"), "8192\n");
  query("PRAGMA page_size = 4096; VACUUM");
  load({scan(kNoon, 0, "B")});
  EXPECT_EQ(query("PRAGMA page_size"), "4096\n");
  EXPECT_EQ(query("SELECT count(*) FROM machines"), "2\n");
}

TEST_F(DatabaseTest, PathsAreStoredOnce) {
  load({scan(kNoon), scan("20120119120000.000000+0")});
  EXPECT_EQ(query("SELECT count(*) FROM paths"), "2\n");
  load({scan("20120120120000.000000+0", 1)});
  EXPECT_EQ(query("SELECT count(*), (SELECT count(*) FROM facts) FROM paths"), "3|7\n");
}

TEST_F(DatabaseTest, ADatabaseOfTheVersionBeforeBecomesOneOfThis) {
  std::ifstream dump(std::string(PROJECT_ROOT) + "/tests/inv/export/version_2.sql");
  std::stringstream sql;
  sql << dump.rdbuf();
  query(sql.str() +
        "; CREATE VIEW mine AS SELECT name FROM machines; CREATE INDEX my_index ON facts (name);");
  const std::string columns =
      "SELECT machine_id, position, path, element, name, value, unit, base_value FROM facts ORDER BY 1, 2";
  const std::string machines = "SELECT id, machine, timestamp, name, scanned, file, signed_by FROM machines";
  const std::string facts_before = query(columns), machines_before = query(machines);
  load({scan("20120118120000.000000+0", 0, "SIM0OLD001"), scan("20120118100000.000000+600", 0, "SIM0OLD001"),
        scan("someday", 0, "SIM0OLD001")});
  EXPECT_THAT(outcomes, ElementsAre(Loaded::added, Loaded::replaced, Loaded::replaced));
  fs::remove(path);
  query(sql.str());
  load({});
  EXPECT_EQ(query(columns), facts_before);
  EXPECT_EQ(query(machines), machines_before);
  EXPECT_EQ(query("SELECT scanned_at FROM machines ORDER BY id"),
            "2012-01-18T00:00:00Z\n2012-01-18T11:00:00Z\nNULL\n2026-11-21T09:00:00Z\n");
  EXPECT_EQ(query("SELECT DISTINCT section, kind, element_index, number FROM facts WHERE path LIKE '%/size' "
                  "OR path LIKE '%int-name'"),
            "snapshot|/Storage/Logical-disks/partition/size|1|499.5\nasset|AssetInfo/int-name||NULL\n");
  EXPECT_EQ(query("SELECT DISTINCT name, version, version_key FROM software"),
            "Safari|5.1|.0000000005.0000000001.\n");
  EXPECT_EQ(query("PRAGMA user_version"), "5\n");
  EXPECT_EQ(query("PRAGMA foreign_key_check; PRAGMA integrity_check"), "ok\n");
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

std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(DatabaseTest, LeavesWhatIsNotItsOwnAsItIs) {
  for (const char* sql :
       {"CREATE TABLE mine (x)", "CREATE TABLE machines (x); PRAGMA user_version = 1",
        "CREATE TABLE machines (x); CREATE TABLE facts (y); PRAGMA user_version = 2",
        "PRAGMA application_id = 77", "PRAGMA user_version = 4",
        "CREATE TABLE t (x); PRAGMA user_version = 4",
        "CREATE TABLE t (x); PRAGMA application_id = 1447775305; PRAGMA user_version = 6"}) {
    fs::remove(path);
    query(sql);
    const std::string before = content_of(path);
    inv::Database database;
    EXPECT_FALSE(database.open(path)) << sql;
    EXPECT_EQ(database.error(), "is a database of another program, or of another version of inv") << sql;
    EXPECT_EQ(content_of(path), before) << sql;
  }
}

TEST_F(DatabaseTest, BothVersionsBeforeAreBroughtToThisOne) {
  std::ifstream dump(std::string(PROJECT_ROOT) + "/tests/inv/export/version_2.sql");
  std::stringstream sql;
  sql << dump.rdbuf();
  query(sql.str() + "; CREATE VIEW usb AS SELECT name FROM facts; PRAGMA user_version = 3");
  load({scan(kNoon)});
  EXPECT_EQ(query("SELECT count(*) FROM machines"), "5\n");
  EXPECT_EQ(query("SELECT count(*) FROM usb"), "0\n");
}

std::string scan_of_versions(const std::string& name, const std::string& lines) {
  return maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=" + name + "\n+Software=\n" + lines +
                             "-\n-\n");
}

TEST_F(DatabaseTest, VersionsHaveKeysThatSortAsTheyDo) {
  load({scan_of_versions("A", "*Soft:1=Old\nversion=5.9\n*Soft:2=New\nversion=5.10\n*Soft:3=Bare\n"),
        scan_of_versions("B", "*Soft:1=Beta\nversion=5.10b1\n*Soft:2=Same\nversion=5.9\n")});
  const std::string older =
      "SELECT name FROM software WHERE version_key < printf('.%010d.%010d.', 5, 10) ORDER BY 1";
  EXPECT_EQ(query(older), "Beta\nOld\nSame\n");
  EXPECT_EQ(query("SELECT name FROM software ORDER BY version_key DESC, name"),
            "New\nBeta\nOld\nSame\nBare\n");
  EXPECT_EQ(query("SELECT count(*) FROM version_keys"), "3\n");
}

TEST_F(DatabaseTest, KeysOfARefusedScanAreTakenBackAndMadeAgainForOthers) {
  const std::string large =
      scan_of_versions("A", "*Soft:1=Old\nversion=5.9\ninfo=" + std::string(5000, 'x') + "\n");
  const std::string small = scan_of_versions("B", "*Soft:1=Old\nversion=5.9\n");
  inv::Database database;
  ASSERT_TRUE(database.open(path)) << database.error();
  database.limit_texts(4000);
  std::vector<inv::Outcome> results;
  ASSERT_TRUE(database.add_all(arrivals_of({large, small}), results));
  EXPECT_THAT(fates(results), ElementsAre(Loaded::refused, Loaded::added));
  EXPECT_EQ(query("SELECT version_key FROM software"), ".0000000005.0000000009.\n");
}

TEST_F(DatabaseTest, OfAVersionThatIsTooLongThereIsNoKey) {
  load({scan_of_versions("A", "*Soft:1=Odd\nversion=" + std::string(1001, '1') + "\n")});
  EXPECT_EQ(query("SELECT name, version_key FROM software"), "Odd|NULL\n");
}

TEST_F(DatabaseTest, TheVersionWithoutKeysGetsThem) {
  load({scan_of_versions("A", "*Soft:1=Safari\nversion=5.1\n")});
  query(
      "DROP TABLE version_keys; DROP VIEW software; CREATE VIEW software AS SELECT 1; CREATE VIEW mine AS "
      "SELECT 2; "
      "PRAGMA user_version = 4");
  load({scan_of_versions("B", "*Soft:1=Safari\nversion=6.0\nfile-version=7\n")});
  EXPECT_EQ(query("SELECT machine, version_key FROM software ORDER BY 1"),
            "A|.0000000005.0000000001.\nB|.0000000006.\n");
  EXPECT_EQ(query("SELECT version FROM version_keys"), "5.1\n6.0\n7\n");
  EXPECT_EQ(query("SELECT * FROM mine; PRAGMA user_version"), "2\n5\n");
}

TEST_F(DatabaseTest, PutsItsMarkOnADatabase) {
  load({});
  EXPECT_EQ(query("PRAGMA application_id; PRAGMA user_version"), "1447775305\n5\n");
}

TEST_F(DatabaseTest, NamesWhatCannotBeOpened) {
  std::ofstream(path) << std::string(4096, 'x');
  inv::Database no_database;
  EXPECT_FALSE(no_database.open(path));
  EXPECT_EQ(no_database.error(), "file is not a database");
  EXPECT_EQ(content_of(path), std::string(4096, 'x'));
  inv::Database nowhere;
  EXPECT_FALSE(nowhere.open("/nowhere/at/all.db"));
  EXPECT_EQ(nowhere.error(), "unable to open database file");
}

}  // namespace
