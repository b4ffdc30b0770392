#include "inv/redact/redact.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "inv/file/verify.h"
#include "inv/maker.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

const std::string kTop =
    "timestamp=20120118153045.000000+120\nscan-time=1000\nclient-version=12.01.18.0\nscan-subtype="
    "sstService\n"
    "snaptype=mac:1\n";

// A file with these lines in its snapshot, after what every snapshot has.
std::string file_with(const std::string& lines) {
  return maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + kTop + lines + "-\n");
}

inv::Redaction redacted_file(const std::string& file, const std::string& key = "key",
                             bool drop_opaque = false) {
  return inv::redact(maker::open(file), {key, "", drop_opaque});
}

// The lines of the redacted snapshot that file_with was given.
std::string redacted(const std::string& lines, const std::string& key = "key") {
  const inv::Redaction redaction = redacted_file(file_with(lines), key);
  EXPECT_EQ(redaction.refusal, "");
  const auto result = maker::open(redaction.bytes);
  EXPECT_TRUE(inv::verify(*result).faults.empty());
  const std::string text = result->snapshot()->text();
  const size_t start = text.find(kTop) + kTop.size();
  return text.substr(start, text.size() - start - 2);
}

// The pseudonym of a name.
std::string anon(const std::string& name) {
  inv::Pseudonyms pseudonyms("key");
  pseudonyms.add(inv::IdentifierKind::text, name);
  pseudonyms.assign();
  return pseudonyms.replace(name);
}

TEST(Redact, ReplacesIdentifiersInTheirPlaces) {
  EXPECT_EQ(redacted("hostname=ATELIER\nuser-name=jane\nmodel=iMac11,1\n"),
            "hostname=" + anon("ATELIER") + "\nuser-name=" + anon("jane") + "\nmodel=iMac11,1\n");
  EXPECT_THAT(redacted("*Chassis=\nserial=C02TEST00001\n"),
              MatchesRegex("\\*Chassis=\nserial=[A-Z][0-9]{2}[A-Z]{4}[0-9]{5}\n"));
  EXPECT_THAT(redacted("ip-address=192.0.2.17, 192.0.2.18\n"),
              MatchesRegex("ip-address=10\\.[0-9.]+, 10\\.[0-9.]+\n"));
}

TEST(Redact, ReplacesThemWhereverTheyAreTokens) {
  EXPECT_EQ(redacted("hostname=OFFICE-MAC\n"
                     "*Soft:1=Tool of Office-Mac\n~seen-on=office-mac\n"
                     "location=/Applications/office-mac/x.app\n"
                     "version=1.0office-mac\n"),
            "hostname=" + anon("OFFICE-MAC") + "\n" + "*Soft:1=Tool of " + anon("office-mac") +
                "\n~seen-on=" + anon("office-mac") + "\n" + "location=/Applications/" + anon("office-mac") +
                "/x.app\n" + "version=1.0office-mac\n");
}

TEST(Redact, ReplacesAccountsAlsoAsKeysOfTheirTags) {
  EXPECT_EQ(redacted("*usr-acc:jane=jane\nfullname=Jane Example\nid=501\nhdir=/users/jane\n"),
            "*usr-acc:" + anon("jane") + "=" + anon("jane") + "\nfullname=" + anon("Jane Example") +
                "\nid=501\nhdir=/users/" + anon("jane") + "\n");
  EXPECT_EQ(redacted("*usr-acc:x=\n"), "*usr-acc:" + anon("x") + "=\n");
}

TEST(Redact, ReplacesTheWholeNameOfAFolderThatHoldsBlanks) {
  EXPECT_EQ(redacted("*Soft:1=x\nlocation=/Users/Jane Doe/x.app\ninfo=by Jane Doe and Jane\n"),
            "*Soft:1=x\nlocation=/Users/" + anon("Jane Doe") + "/x.app\ninfo=by " + anon("Jane Doe") +
                " and " + anon("Jane") + "\n");
  EXPECT_EQ(redacted("*usr-acc:1=jane\nfullname=Jane Doe\nhdir=/Users/Jane Doe\n"),
            "*usr-acc:1=" + anon("jane") + "\nfullname=" + anon("Jane Doe") + "\nhdir=/Users/" +
                anon("Jane Doe") + "\n");
  // What could be anything elsewhere is replaced in its own place.
  EXPECT_EQ(redacted("location=/Users/1 2/x.app\ninfo=3 1 2\n"),
            "location=/Users/" + anon("1 2") + "/x.app\ninfo=3 1 2\n");
}

TEST(Redact, KeepsNamesOfVariablesUnlessTheyNameSomebody) {
  EXPECT_EQ(redacted("user-name=jane\n*env-var:JANE_HOME=JANE_HOME\nvalue=/opt\nenv-var:LANG=\n~complex=\n"),
            "user-name=" + anon("jane") + "\n*env-var:" + anon("JANE") + "_HOME=" + anon("JANE") +
                "_HOME\nvalue=" + anon("/opt") + "\nenv-var:LANG=\n~complex=\n");
}

TEST(Redact, FindsNamesInPathsThatNoPlaceHolds) {
  EXPECT_EQ(redacted("*Soft:1=x\nlocation=/Users/al/x.app\ninfo=/Volumes/2010/x by al\n"),
            "*Soft:1=x\nlocation=/Users/" + anon("al") + "/x.app\ninfo=/Volumes/" + anon("2010") + "/x by " +
                anon("al") + "\n");
}

TEST(Redact, TakesCommandLinesApartForOtherTexts) {
  EXPECT_EQ(
      redacted("*process:1=x\nuser=root\ncmd-line=/Users/jane/x -v\n*Soft:1=Jane\n"),
      "*process:1=x\nuser=root\ncmd-line=" + anon("/Users/jane/x -v") + "\n*Soft:1=" + anon("jane") + "\n");
}

TEST(Redact, KeepsTheScannersOwnWordsAndTimes) {
  const std::string lines =
      "*os:1=Mac OS X v10.6 (Snow Leopard)\n~kind=mac\nmanuf=Apple Inc.\ninst=20120118153045.000000+120\n";
  EXPECT_EQ(redacted(lines + "user-name=leopard\nlogin=sata\nhostname=120\nmodel=SATA\n"),
            lines + "user-name=" + anon("leopard") + "\nlogin=" + anon("sata") + "\nhostname=" + anon("120") +
                "\nmodel=SATA\n");
  EXPECT_EQ(redacted("user-name=leopard\nos=Leopard 10.6\n"),
            "user-name=" + anon("leopard") + "\nos=" + anon("leopard") + " 10.6\n");
}

// A stick with the serial number "000000" once rewrote every time in the file.
TEST(Redact, KeepsTimesWithShortOffsets) {
  const std::string lines = "inst=20120118153045.000000+0\n*USB=\ntime=20120118153045.000000-60\n";
  EXPECT_EQ(redacted(lines + "serial-number=000000\n"), lines + "serial-number=000000\n");
  EXPECT_THAT(redacted(lines + "serial-number=153045\n"), HasSubstr(lines + "serial-number="));
}

TEST(Redact, KeepsCommonWordsSoThatPathsStayWhatTheyAre) {
  const std::string lines =
      "user-name=admin\nos=Mac OS X 10.6\n*Chassis=\nalias=Mac\n*Logical-disks=\n*partition:1=System\n"
      "mount-point=/Volumes/Macintosh HD\npath=/System/Library/admin\n";
  EXPECT_EQ(redacted(lines), lines);
}

TEST(Redact, LearnsTheWordsOfFullNames) {
  EXPECT_EQ(redacted("*usr-acc:1=jd\nfullname=Jane Doe\n*Soft:1=x\ninfo=(c) 2012 Doe and others\n"),
            "*usr-acc:1=" + anon("jd") + "\nfullname=" + anon("Jane Doe") + "\n*Soft:1=x\ninfo=(c) 2012 " +
                anon("Doe") + " and others\n");
}

TEST(Redact, LearnsHostsAndDomainsFromUrls) {
  EXPECT_EQ(
      redacted("*Soft:1=x\ninfo=http://wiki.firm.example/x\nnote=wiki.firm.example and nas.firm.example\n"),
      "*Soft:1=x\ninfo=http://" + anon("wiki.firm.example") + "/x\nnote=" + anon("wiki.firm.example") +
          " and nas." + anon("firm.example") + "\n");
}

TEST(Redact, ReplacesWhatAPersonKeepsInItsPlaceOnly) {
  EXPECT_EQ(redacted("location=/Users/jane/Reports/Notes.app\ninfo=Reports\n"),
            "location=/Users/" + anon("jane") + "/" + anon("Reports") + "/Notes.app\ninfo=Reports\n");
}

// Replacing only the token would leave the rest of the folder's name.
TEST(Redact, ReplacesAPersonsWholeFolderEvenIfItContainsAName) {
  EXPECT_EQ(redacted("location=/Users/jane/jane and me/x.app\n"),
            "location=/Users/" + anon("jane") + "/" + anon("jane and me") + "/x.app\n");
}

TEST(Redact, ReplacesNamesOfProgramsWithSomebodysNameInThem) {
  EXPECT_EQ(redacted("user-name=jane\nenv-var:JANETOOL=\n~complex=\n*process:1=janet\n*Soft:1=janet\n"
                     "*env-var:JANETOOL=JANETOOL\n"),
            "user-name=" + anon("jane") + "\nenv-var:" + anon("JANETOOL") +
                "=\n~complex=\n*process:1=" + anon("janet") +
                "\n*Soft:1=janet\n*env-var:" + anon("JANETOOL") + "=" + anon("JANETOOL") + "\n");
  EXPECT_EQ(redacted("user-name=rob\n*process:1=problem\n"),
            "user-name=" + anon("rob") + "\n*process:1=problem\n");
}

TEST(Redact, ReplacesSystemPathsOfTheEnvironmentInTheirPlaceOnly) {
  EXPECT_EQ(redacted("*env-var:SHELL=SHELL\nvalue=/bin/zsh\n*usr-acc:1=jane\nshell=/bin/zsh\n"),
            "*env-var:SHELL=SHELL\nvalue=" + anon("/bin/zsh") + "\n*usr-acc:1=" + anon("jane") +
                "\nshell=/bin/zsh\n");
  EXPECT_EQ(redacted("*env-var:KEY=KEY\nvalue=hunter2\n*Soft:1=hunter2\n"),
            "*env-var:KEY=KEY\nvalue=" + anon("hunter2") + "\n*Soft:1=" + anon("hunter2") + "\n");
}

std::string salted(const std::string& text, const std::string& salt) {
  const inv::Redaction redaction = inv::redact(maker::open(maker::file_of_text(text)), {"key", salt, false});
  EXPECT_EQ(redaction.refusal, "");
  const auto result = maker::open(redaction.bytes);
  EXPECT_TRUE(result->faults.empty());
  return result->snapshot()->text();
}

TEST(Redact, WritesTheSaltAfterTheTopElementsAnnotations) {
  const std::string mark = "\xEF\xBB\xBF?zxml\n";
  EXPECT_EQ(salted(mark + "+Snapshot=\n~a=b\n~c=d\nmodel=x\n~e=f\n-\n", "0a"),
            mark + "+Snapshot=\n~a=b\n~c=d\npseudonym-salt=0a\nmodel=x\n~e=f\n-\n");
  EXPECT_EQ(salted(mark + "*Snapshot=\n", "0a"), mark + "*Snapshot=\npseudonym-salt=0a\n");
  EXPECT_EQ(salted(mark + "+Snapshot=\n-\n", "0a"), mark + "+Snapshot=\npseudonym-salt=0a\n-\n");
}

TEST(Redact, DropsTheSaltOfAnEarlierKey) {
  const std::string mark = "\xEF\xBB\xBF?zxml\n";
  const std::string tree = "*OS=\npseudonym-salt=stays\n-\n";
  EXPECT_EQ(salted(mark + "+Snapshot=\npseudonym-salt=0a\n" + tree, "0b"),
            mark + "+Snapshot=\npseudonym-salt=0b\n" + tree);
  EXPECT_EQ(salted(mark + "+Snapshot=\npseudonym-salt=0a\n" + tree, ""), mark + "+Snapshot=\n" + tree);
}

TEST(Redact, KeepsWhatSeparatesIdentifiers) {
  EXPECT_THAT(redacted("*Monitor:1=x\nserial=QX24-0417\r   WXYZ9\r\n"),
              MatchesRegex("\\*Monitor:1=x\nserial=[A-Z]{2}[0-9]{2}-[0-9]{4}\r   [A-Z]{4}[0-9]\r\n"));
}

TEST(Redact, GivesTheSamePseudonymsForTheSameKey) {
  const std::string file = maker::file();
  EXPECT_EQ(redacted_file(file, "one").bytes, redacted_file(file, "one").bytes);
  EXPECT_NE(redacted_file(file, "one").bytes, redacted_file(file, "two").bytes);
  EXPECT_EQ(redacted("hostname=jane\n"), redacted("hostname=jane\nlogin=other\n").substr(0, 24));
}

TEST(Redact, ReplacesTheSameInAllTrees) {
  const inv::Redaction redaction = redacted_file(maker::file());
  const auto result = maker::open(redaction.bytes);
  EXPECT_EQ(result->snapshot_top().text("hostname"), result->asset_top().text("hostname"));
  EXPECT_EQ(result->snapshot_top().child("System").child("Chassis").text("serial"),
            result->asset_top().text("serial-number"));
  EXPECT_NE(result->asset_top().text("serial-number"), "C02TEST00001");
}

TEST(Redact, ReadsEveryFormOfAFile) {
  for (const maker::Form& form : {maker::Form{0, Layout::split_compressed, HeaderForm::plain},
                                  maker::Form{1, Layout::split_plain, HeaderForm::compressed}}) {
    EXPECT_EQ(redacted_file(maker::file(form)).bytes, redacted_file(maker::file()).bytes);
  }
}

TEST(Redact, KeepsAHeaderTimeThatIsMalformed) {
  const std::string file =
      maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\ntimestamp=by jane\nuser-name=jane\n");
  const auto result = maker::open(redacted_file(file).bytes);
  EXPECT_EQ(result->container->sections[0].timestamp, "20120118153045.000000+120");
  EXPECT_EQ(result->snapshot_top().text("timestamp"), "by " + anon("jane"));
}

TEST(Redact, ReplacesIdentifiersInTheHeaderToo) {
  const std::string section =
      maker::deflated("\xEF\xBB\xBF?zxml\n*Snapshot=\nuser-name=jane\n") + std::string("\0\1ZXML", 6);
  const std::string file = maker::container(
      section, "[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength=" + std::to_string(section.size()) +
                   "\ntype=snapshot\ntimestamp=20120118153045.000000+120\nsnaptype=by jane\n");
  const inv::Redaction redaction = redacted_file(file);
  EXPECT_EQ(redaction.refusal, "");
  EXPECT_EQ(maker::open(redaction.bytes)->container->sections[0].snaptype, "by " + anon("jane"));
}

TEST(Redact, RefusesRawDataUnlessItMayDropIt) {
  const std::string file = maker::debug_file("<plist>jane</plist>");
  EXPECT_EQ(redacted_file(file).refusal,
            "section 1 (raw data) can contain anything; use --drop-opaque to leave it out");
  EXPECT_EQ(redacted_file(file).bytes, "");
  const inv::Redaction redaction = redacted_file(file, "key", true);
  EXPECT_EQ(redaction.refusal, "");
  const auto result = maker::open(redaction.bytes);
  ASSERT_EQ(result->container->sections.size(), 1u);
  EXPECT_EQ(result->asset_top().text("hostname"), anon("OFFICE-MAC"));
}

TEST(Redact, RefusesWhatItCannotRead) {
  EXPECT_EQ(redacted_file("no inventory").refusal, "it is not an inventory");
  std::string damaged = maker::file();
  damaged[20] = static_cast<char>(damaged[20] ^ 0x55);
  EXPECT_EQ(redacted_file(damaged).refusal, "it is damaged");
  EXPECT_EQ(redacted_file(maker::container("", "[H]\ncount=0\nsnapshotcount=0\n")).refusal,
            "it contains no tree");
}

// The proof, on files that were not redacted.
std::string survivor(const std::string& identifier, const std::string& file) {
  inv::Pseudonyms pseudonyms("key");
  pseudonyms.add(inv::IdentifierKind::text, identifier);
  pseudonyms.assign();
  return inv::find_survivor(pseudonyms, *maker::open(file));
}

TEST(FindSurvivor, NamesTheLine) {
  EXPECT_EQ(survivor("jane", file_with("model=x\nname=for Jane!\n")), "in line 9 of Snapshot");
  EXPECT_EQ(survivor("jane", file_with("*Soft:1=x\n~note=jane\n")), "in line 9 of Snapshot");
  EXPECT_EQ(survivor("jane", file_with("*usr-acc:jane=\n")), "in line 8 of Snapshot");
  EXPECT_EQ(survivor("jane", file_with("env-var:X_JANE=\n")), "in line 8 of Snapshot");
}

TEST(FindSurvivor, SeesShortOnesInTheirPlaces) {
  EXPECT_EQ(survivor("7", file_with("*Chassis=\nserial=7\n")), "in line 9 of Snapshot");
  EXPECT_EQ(survivor("7", file_with("*Soft:1=\nversion=7\n")), "");
  EXPECT_EQ(survivor("x", file_with("path=/Users/x/y\n")), "in line 8 of Snapshot");
}

TEST(FindSurvivor, SeesTheHeader) {
  EXPECT_EQ(survivor("jane", maker::container("",
                                              "[H]\ncount=1\nsnapshotcount=0\n[0]\noffset=0\nlength=0\n"
                                              "type=assetinfo\ntimestamp=x jane\n")),
            "in the header");
}

TEST(FindSurvivor, SeesNothingInOrdinaryText) {
  EXPECT_EQ(survivor("jane", file_with("a=janet\nb=20120118\n")), "");
  EXPECT_EQ(survivor("memory", file_with("+Memory=\nused=1\n-\n")), "");
}

TEST(FindSurvivor, SuspectsWhatItCannotRead) {
  EXPECT_EQ(survivor("jane", maker::debug_file("x")), "in a section that cannot be read");
}

std::string refusal_of(const std::string& lines, uint64_t max_size) {
  return inv::redact(maker::open(file_with(lines)), {"key", "", false, max_size}).refusal;
}

TEST(Redact, RefusesWhatWouldGrowBeyondTheLimit) {
  // Every name of one letter becomes one of fourteen.
  const std::string line = "hostname=x\nfirst=/Users/a/b\nsecond=/Users/a/b\n";
  const inv::Redaction redaction = redacted_file(file_with(line));
  const uint64_t size = inv::inflated_size(*maker::open(redaction.bytes));
  EXPECT_GT(size, inv::inflated_size(*maker::open(file_with(line))));
  const std::string many(40 * 128, 'y');
  const std::string lines = line + "third=" + many + "\n";
  const uint64_t all = size + std::string("third=\n").size() + many.size();
  EXPECT_EQ(refusal_of(lines, all), "");
  EXPECT_EQ(refusal_of(lines, all - 1), "the result would be larger than " + std::to_string(all - 1) +
                                            " bytes; a larger --max-size allows more");
}

TEST(Redact, RefusesMoreIdentifiersThanMemoryShouldPayFor) {
  std::string lines;
  for (int i = 0; i < 100; ++i) lines += "place=/Volumes/v" + std::to_string(i) + "x\n";
  EXPECT_EQ(refusal_of(lines, 1 << 20), "");
  EXPECT_EQ(refusal_of(lines, 80'000),
            "what identifies somebody takes more than 10000 bytes; a larger --max-size allows more");
}

}  // namespace
