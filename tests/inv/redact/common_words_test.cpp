#include "inv/redact/common_words.h"

#include <gtest/gtest.h>

namespace {

TEST(IsCommonWord, KnowsVolumesAndAccountsOfManyMacs) {
  for (const char* name :
       {"Macintosh HD", "macintosh hd", "Macintosh HD 2", "Macintosh HD - Data", "System", "OS", "Data",
        "Preboot", "Untitled 1", "Untitled-2", "admin", "MacBook Pro", "disk0s1"}) {
    EXPECT_TRUE(inv::is_common_word(name)) << name;
  }
}

TEST(IsCommonWord, IsNotOneThatSomebodyChose) {
  for (const char* name : {"", "jane", "Jane HD", "Macintosh HD of Jane", "admin2", "Lab - Data", " - Data",
                           "7", "diskette", "disk0x1"}) {
    EXPECT_FALSE(inv::is_common_word(name)) << name;
  }
}

TEST(IsUsualFolder, KnowsFoldersOfTheSystem) {
  EXPECT_TRUE(inv::is_usual_folder("Library"));
  EXPECT_TRUE(inv::is_usual_folder("application support"));
  EXPECT_FALSE(inv::is_usual_folder("Client"));
}

}  // namespace
