#include "collectors/users.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/collectors/tool_helpers.h"
#include "tests/collectors/tree_helpers.h"

namespace {

constexpr char kRecord[] =
    "AppleMetaNodeLocation: /Local/Default\n"
    "GeneratedUID: 00000000-1111-2222-3333-444444444444\n"
    "NFSHomeDirectory: /Users/jdoe\n"
    "Password: ********\n"
    "PrimaryGroupID: 20\n"
    "RealName:\n"
    " Jane Doe\n"
    "RecordName: jdoe\n"
    "RecordType: dsRecTypeStandard:Users\n"
    "UniqueID: 501\n"
    "UserShell: /bin/bash\n";

std::string text_of(const Text& text) { return text ? text.get() : "(none)"; }

// The record's name, full name, group, id and shell; "no account" when it has none.
std::string parsed(std::string_view record) {
  // At the very end of its own block, so that a read beyond it is caught.
  const std::vector<char> block(record.begin(), record.end());
  const std::optional<Account> account = parse_account({block.data(), block.size()});
  if (!account) return "no account";
  return text_of(account->name) + "|" + text_of(account->full_name) + "|" + text_of(account->group) + "|" +
         text_of(account->id) + "|" + text_of(account->shell);
}

TEST(ParseAccount, ReadsEveryText) { EXPECT_EQ(parsed(kRecord), "jdoe|Jane Doe|20|501|/bin/bash"); }

TEST(ParseAccount, ReadsAFullNameOnTheKeysOwnLine) {
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRealName: games\nRecordName: games\nRecordType: t\n"),
            "games|games|(none)|(none)|(none)");
}

TEST(ParseAccount, IsNulloptWithoutAHomeDirectory) {
  EXPECT_EQ(parsed(""), "no account");
  EXPECT_EQ(parsed("<dscl_cmd> DS Error: -14136 (eDSRecordNotFound)\n"), "no account");
  EXPECT_EQ(parsed("x\nRecordName: jdoe\nRecordType: t\n"), "no account");
  // The key begins a line, and the record does not begin with it.
  EXPECT_EQ(parsed("NFSHomeDirectory: /\nRecordName: jdoe\nRecordType: t\n"), "no account");
}

TEST(ParseAccount, ReadsOnlyWhatFollowsTheHomeDirectory) {
  EXPECT_EQ(parsed("UserShell: /bin/false\nRecordName: other\nRecordType: t\nUniqueID: 1\n"
                   "NFSHomeDirectory: /\nRecordName: jdoe\nRecordType: t\n"),
            "jdoe|(none)|(none)|(none)|(none)");
}

TEST(ParseAccount, IsNulloptWithoutRecordNameAndTypeInThatOrder) {
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRecordName: jdoe\n"), "no account");
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRecordType: t\n"), "no account");
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRecordType: t\nRecordName: jdoe\n"), "no account");
}

TEST(ParseAccount, JoinsSeveralRecordNamesByBlanks) {
  EXPECT_EQ(
      parsed("x\nNFSHomeDirectory: /\nRecordName:\n jdoe\n\t com.example.id \t\n\n jane\nRecordType: t\n"),
      "jdoe com.example.id jane|(none)|(none)|(none)|(none)");
}

TEST(ParseAccount, TrimsLineEndsTabsAndBlanksOffEveryText) {
  EXPECT_EQ(
      parsed("x\nNFSHomeDirectory: /\nPrimaryGroupID:\t 20 \t\nRealName:\n\t Jane\t\nRecordName:\t\n jdoe\t\n"
             "RecordType: t\nUniqueID: \t501\t \nUserShell:\t/bin/sh\t\n"),
      "jdoe|Jane|20|501|/bin/sh");
  // No other blanks.
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRecordName: \rjdoe\v\nRecordType: t\n"),
            "\rjdoe\v|(none)|(none)|(none)|(none)");
}

TEST(ParseAccount, KeepsBlanksInsideARecordName) {
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRecordName: _mysql  mysql\t2\nRecordType: t\n"),
            "_mysql  mysql\t2|(none)|(none)|(none)|(none)");
}

TEST(ParseAccount, ReadsEmptyTexts) {
  EXPECT_EQ(parsed("x\nNFSHomeDirectory:\nPrimaryGroupID:\nRealName:\nRecordName:\nRecordType:\nUniqueID: \n"
                   "UserShell:\n"),
            "||||");
}

TEST(ParseAccount, ReadsALastLineWithoutItsEnd) {
  EXPECT_EQ(parsed("x\nNFSHomeDirectory: /\nRecordName: a\nRecordType: t\nUserShell: /bin/sh"),
            "a|(none)|(none)|(none)|/bin/sh");
}

TEST(ParseAccount, CutsATextAtANulByte) {
  const char record[] = "x\nNFSHomeDirectory: /\nRecordName: jd\0oe\nRecordType: t\nUserShell: /bin/sh\n";
  EXPECT_EQ(parsed({record, sizeof record - 1}), "jd|(none)|(none)|(none)|/bin/sh");
}

TEST(ParseAccount, ReadsWhatIsWholeInATruncatedRecord) {
  const std::string_view record = kRecord;
  const size_t name_is_known = record.find("RecordType:") + std::strlen("RecordType:");
  const size_t id_is_begun = record.find("UniqueID:") + std::strlen("UniqueID:");
  const size_t shell_is_begun = record.find("UserShell:") + std::strlen("UserShell:");
  for (size_t length = 0; length <= record.size(); ++length) {
    SCOPED_TRACE(length);
    const std::string text = parsed(record.substr(0, length));
    if (length < name_is_known) {
      EXPECT_EQ(text, "no account");
    } else if (length < id_is_begun) {
      EXPECT_EQ(text, "jdoe|Jane Doe|20|(none)|(none)");
    } else if (length < shell_is_begun) {
      const std::string id =
          std::string("501").substr(0, length - id_is_begun > 0 ? length - id_is_begun - 1 : 0);
      EXPECT_EQ(text, "jdoe|Jane Doe|20|" + id + "|(none)");
    } else {
      EXPECT_EQ(text.rfind("jdoe|Jane Doe|20|501|", 0), 0u) << text;
    }
  }
}

TEST(AccountCommand, LeavesAnOrdinaryNameAlone) {
  EXPECT_STREQ(account_command("jdoe").get(), "dscl . -read \"/users/jdoe\"");
  EXPECT_STREQ(account_command(".localized").get(), "dscl . -read \"/users/.localized\"");
  EXPECT_STREQ(account_command("").get(), "dscl . -read \"/users/\"");
  EXPECT_STREQ(account_command("J\xC3\xB6rg's & Co; (2)").get(),
               "dscl . -read \"/users/J\xC3\xB6rg's & Co; (2)\"");
}

TEST(AccountCommand, EscapesWhatIsSpecialBetweenQuotes) {
  EXPECT_STREQ(account_command("a\"b\\c$d`e").get(), "dscl . -read \"/users/a\\\"b\\\\c\\$d\\`e\"");
}

// A Mac whose /Users holds these folders; dscl writes down its arguments and prints the record for each.
class UserAccounts : public testing::Test {
 protected:
  void list(const std::string& listing) { write_printing_tool(tools_, "ls", listing); }
  void add_record(const std::string& folder, const std::string& record) {
    write_file(tools_, "record-" + folder, record);
  }
  // The snapshot's text; what the run complains of is left in `complaints_`.
  std::string collect(const SeriesLimits& limits = kAccountLimits) {
    InventoryTree snapshot = empty_snapshot();
    testing::internal::CaptureStderr();
    collect_user_accounts(snapshot, limits);
    complaints_ = testing::internal::GetCapturedStderr();
    return tree_text(snapshot);
  }
  void SetUp() override {
    tools_.write("dscl", keeping_arguments(tools_) + "echo >> '" + tools_.file("arguments") + "'\ncat '" +
                             tools_.file("record-") + "'\"${3#/users/}\" 2> /dev/null");
  }

  FakeTools tools_;
  std::string complaints_;
};

std::string short_record(const std::string& name) {
  return "x\nNFSHomeDirectory: /\nRecordName: " + name + "\nRecordType: t\n";
}

std::string accounts(const std::string& lines) { return "+Snapshot=\n+User-accounts=\n" + lines + "-\n-\n"; }

TEST_F(UserAccounts, WritesTheFoldersThatHaveARecord) {
  list("Guest\nShared\njdoe\n");
  add_record("Guest", short_record("guest"));
  add_record("jdoe", kRecord);
  EXPECT_EQ(collect(), accounts("*usr-acc:guest=guest\n"
                                "hdir=/users/Guest\n"
                                "is-system-user=0\n"
                                "*usr-acc:jdoe=jdoe\n"
                                "fullname=Jane Doe\n"
                                "group=20\n"
                                "id=501\n"
                                "shell=/bin/bash\n"
                                "hdir=/users/jdoe\n"
                                "is-system-user=0\n"));
  EXPECT_EQ(tools_.read("arguments"),
            "<.><-read></users/Guest>\n<.><-read></users/Shared>\n<.><-read></users/jdoe>\n");
}

TEST_F(UserAccounts, ReadsNoRecordForALastLineWithoutItsEnd) {
  list("jdoe\nrest");
  collect();
  EXPECT_EQ(tools_.read("arguments"), "<.><-read></users/jdoe>\n");
}

TEST_F(UserAccounts, ReadsHiddenAndEmptyNamesLikeAnyOther) {
  list("\n.hidden\n");
  add_record(".hidden", short_record("ghost"));
  EXPECT_EQ(collect(), accounts("*usr-acc:ghost=ghost\nhdir=/users/.hidden\nis-system-user=0\n"));
  EXPECT_EQ(tools_.read("arguments"), "<.><-read></users/>\n<.><-read></users/.hidden>\n");
}

TEST_F(UserAccounts, KeepsTheFactsThatALaterRecordOfTheSameNameLacks) {
  list("one\ntwo\n");
  add_record("one", kRecord);
  add_record("two", short_record("jdoe"));
  EXPECT_EQ(collect(), accounts("*usr-acc:jdoe=jdoe\n"
                                "fullname=Jane Doe\n"
                                "group=20\n"
                                "id=501\n"
                                "shell=/bin/bash\n"
                                "hdir=/users/two\n"
                                "is-system-user=0\n"));
}

TEST_F(UserAccounts, WritesARecordNameWithSlashesAsAPath) {
  list("a\nb\n");
  add_record("a", short_record("x/y"));
  // An empty step needs something to step into.
  add_record("b", short_record("z//y"));
  EXPECT_EQ(collect(), accounts("+usr-acc:x=\n*y=x/y\nhdir=/users/a\nis-system-user=0\n-\n"));
}

TEST_F(UserAccounts, HandsEveryNameToDsclAsOneArgumentAndRunsNothingElse) {
  const std::string touch = "touch " + tools_.file("executed");
  const std::vector<std::string> names = {
      "$(" + touch + ")",
      "`" + touch + "`",
      "\"; " + touch + "; \"",
      "\\\"; " + touch + "; \\\"",
      "\\$(" + touch + ")",
      "\\`" + touch + "`",
      "x\"$(" + touch + ")\"y",
      "; " + touch,
      "& " + touch + " &",
      "| " + touch,
      "' ; " + touch + " ; '",
      "> " + tools_.file("executed"),
      "$HOME ${PATH} $$ $1",
      "backslashes \\\\ \\",
      "-read",
      "--help -rf",
      "  two  blanks  ",
      "*?[a]~{b,c}!#%\t",
      "\xFF\xC3(\x01\x7F",
  };
  std::string listing;
  std::string expected;
  for (const std::string& name : names) {
    listing += name + "\n";
    expected += "<.><-read></users/" + name + ">\n";
  }
  list(listing);
  EXPECT_EQ(collect(), "*Snapshot=\n");
  EXPECT_EQ(tools_.read("arguments"), expected);
  EXPECT_FALSE(std::filesystem::exists(tools_.file("executed")));
}

TEST_F(UserAccounts, RetriesWhileTheListingIsEmpty) {
  const std::string runs = "'" + tools_.file("runs") + "'";
  tools_.write("ls", "echo \"$@\" >> " + runs + "\n[ \"$(wc -l < " + runs + ")\" -lt 3 ] || echo jdoe");
  add_record("jdoe", short_record("jdoe"));
  EXPECT_EQ(collect(), accounts("*usr-acc:jdoe=jdoe\nhdir=/users/jdoe\nis-system-user=0\n"));
  EXPECT_EQ(tools_.read("runs"), "-1 /Users/\n-1 /Users/\n-1 /Users/\n");
}

TEST_F(UserAccounts, GivesUpAfterTwentyFurtherEmptyListings) {
  tools_.write("ls", "printf x >> '" + tools_.file("runs") + "'");
  EXPECT_EQ(collect(), "*Snapshot=\n");
  EXPECT_EQ(tools_.read("runs"), std::string(21, 'x'));
}

TEST_F(UserAccounts, CutsAListingWithoutEnd) {
  tools_.write("ls", "exec head -c 16777217 /dev/zero");
  collect();
  EXPECT_EQ(complaints_, "Output cut off after 16777216 bytes: ls -1 /Users/\n");
}

TEST_F(UserAccounts, ReadsNoMoreRecordsThanItsLimit) {
  list("a\nb\nc\nd\n");
  SeriesLimits limits;
  limits.runs = 2;
  collect(limits);
  EXPECT_EQ(tools_.read("arguments"), "<.><-read></users/a>\n<.><-read></users/b>\n");
  EXPECT_EQ(complaints_, "No longer run: dscl . -read \"/users/c\"\n");
}

TEST_F(UserAccounts, CutsTheRecordsAtTheirLimits) {
  list("a\nb\nc\nd\n");
  for (const char* folder : {"a", "b", "c"}) add_record(folder, std::string(100, 'x'));
  collect({80, 200});
  EXPECT_EQ(complaints_,
            "Output cut off after 80 bytes: dscl . -read \"/users/a\"\n"
            "Output cut off after 80 bytes: dscl . -read \"/users/b\"\n"
            "Output cut off after 40 bytes: dscl . -read \"/users/c\"\n"
            "No longer run: dscl . -read \"/users/d\"\n");
}

TEST(AccountLimits, LeaveRoomForASchoolsServer) {
  EXPECT_EQ(kAccountLimits.runs, 10000u);
  EXPECT_EQ(kAccountLimits.one_output, 64u << 20);
  EXPECT_EQ(kAccountLimits.all_outputs, 512u << 20);
}

}  // namespace
