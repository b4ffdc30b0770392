// The people with an account on the machine.
#pragma once

#include <optional>
#include <string_view>

#include "driver/base/command.h"
#include "zxml/zXML.h"

// An account as the directory holds it, without the blanks and line ends around its texts. A text that the
// record lacks is null.
struct Account {
  Text name;  // the record name; several names, each on its own line, are joined by blanks
  Text full_name;
  Text group;  // the number of the primary group
  Text id;
  Text shell;
};

// The account in the output of dscl's -read. std::nullopt for output without a home directory, as for a
// folder that belongs to no account, or without a record name.
std::optional<Account> parse_account(std::string_view record);

// The command line that reads the record of the account whose home folder has this name. The name reaches
// dscl unchanged, whatever characters it has.
Text account_command(const char* folder);

// How much is read of all records. A school's server may have thousands of home folders; a record may hold a
// portrait.
constexpr SeriesLimits kAccountLimits = {64u << 20, 512u << 20, 10000, 3};

// Writes "/User-accounts/usr-acc:NAME" for the account of every folder that `ls -1 /Users/` lists: its record
// name, full name, group, id and shell as far as dscl prints them, and its home folder. An empty listing is
// asked for again, 20 times at most. Tests lower the limits of dscl.
void collect_user_accounts(InventoryTree& snapshot, const SeriesLimits& limits = kAccountLimits);
