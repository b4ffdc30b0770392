#include "collectors/users.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "collectors/fields.h"
#include "driver/base/command.h"
#include "driver/base/progress.h"
#include "profiler/units.h"

namespace {

constexpr char kListCommand[] = "ls -1 /Users/";
constexpr uint32_t kChunk = 100;
constexpr SeriesLimits kListLimits = {16u << 20, 16u << 20, 21, 1};

// A key whose value ends with its line.
struct LineField {
  const char* key;
  const char* attribute;
  Text Account::*value;
};

constexpr LineField kLineFields[] = {
    {"PrimaryGroupID:", "group", &Account::group},
    {"UniqueID:", "id", &Account::id},
    {"UserShell:", "shell", &Account::shell},
};

Text trimmed(std::string_view text) {
  Text copy = copy_range(text.data(), text.data() + text.size());
  trim(copy.get(), "\n\t ", kTrimBoth);
  return copy;
}

// The text between a key and the next occurrence of an end mark, trimmed. Without the mark it runs to the end
// of the record, or is null when the mark must be there; without the key it is null.
enum class EndMark { optional, required };
Text text_between(std::string_view record, std::string_view key, std::string_view end_mark, EndMark needed) {
  const size_t found = record.find(key);
  if (found == record.npos) return nullptr;
  const std::string_view rest = record.substr(found + key.size());
  const size_t end = rest.find(end_mark);
  if (end == rest.npos && needed == EndMark::required) return nullptr;
  return trimmed(rest.substr(0, end));
}

// Every line end, with the blanks and tabs around it, becomes one blank: the name is part of a tag's name,
// which must stay on its line.
void join_lines(char* text) {
  char* end = text;
  for (const char* next = text; *next; ++next) {
    if (*next != '\n') {
      *end++ = *next;
      continue;
    }
    while (end > text && std::strchr(" \t", end[-1])) --end;
    next += std::strspn(next, "\n\t ") - 1;
    *end++ = ' ';
  }
  *end = '\0';
}

// Every Mac has a folder there, so an empty listing means that ls failed.
Text list_folders(uint32_t* length) {
  CommandSeries ls(kChunk, kListLimits);
  Text listing;
  do {
    listing = ls.run(kListCommand, length);
  } while (*length == 0 && !ls.used_up());
  return listing;
}

void write_account(InventoryTree& snapshot, const Account& account, const std::string& folder) {
  Place element(snapshot.root(), std::string("/User-accounts/usr-acc:") + account.name.get());
  element.set_value(text_value(account.name.get()));
  if (account.full_name) element.set_attribute("fullname", text_value(account.full_name.get()));
  for (const LineField& field : kLineFields) {
    const Text& text = account.*field.value;
    if (text) element.set_attribute(field.attribute, text_value(text.get()));
  }
  // As the console knows home folders: by their name in the listing, in lower-case "/users/".
  element.set_attribute("hdir", text_value(("/users/" + folder).c_str()));
  // The system's own accounts live elsewhere.
  element.set_attribute("is-system-user", yes_no(false));
}

void collect_account(InventoryTree& snapshot, CommandSeries& records, const std::string& folder) {
  uint32_t length = 0;
  const Text record = records.run(account_command(folder.c_str()).get(), &length);
  const std::optional<Account> account = parse_account({record.get(), length});
  if (account) write_account(snapshot, *account, folder);
}

}  // namespace

std::optional<Account> parse_account(std::string_view record) {
  // dscl prints the keys of the directory in alphabetical order; what comes before this one is not ours to
  // read, and may contain anything.
  const size_t start = record.find("\nNFSHomeDirectory:");
  if (start == record.npos) return std::nullopt;
  record.remove_prefix(start);

  Account account;
  account.name = text_between(record, "RecordName:", "RecordType:", EndMark::required);
  if (!account.name) return std::nullopt;
  join_lines(account.name.get());
  account.full_name = text_between(record, "RealName:", "RecordName:", EndMark::required);
  for (const LineField& field : kLineFields) {
    account.*field.value = text_between(record, field.key, "\n", EndMark::optional);
  }
  return account;
}

Text account_command(const char* folder) {
  std::string escaped;
  for (; *folder; ++folder) {
    if (std::strchr("\"\\$`", *folder)) escaped += '\\';
    escaped += *folder;
  }
  return format_string("dscl . -read \"/users/%s\"", escaped.c_str());
}

void collect_user_accounts(InventoryTree& snapshot, const SeriesLimits& limits) {
  announce("Accounts");
  uint32_t length = 0;
  const Text listing = list_folders(&length);
  CommandSeries records(kChunk, limits, "dscl . -read \"/users/NAME\"");
  std::string_view rest(listing.get(), length);
  const auto count = static_cast<size_t>(std::count(rest.begin(), rest.end(), '\n'));
  size_t number = 0;
  // What follows the last line end is not a whole name.
  for (size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
    announce("Accounts", ++number, count);
    collect_account(snapshot, records, std::string(rest.substr(0, end)));
    rest.remove_prefix(end + 1);
  }
}
