#include "inv/redact/common_words.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "inv/redact/token_finder.h"

namespace inv {
namespace {

// All of these lists are in small letters.
constexpr std::string_view kCommonWords[] = {"account",
                                             "accounting",
                                             "adm",
                                             "admin",
                                             "administrator",
                                             "airport",
                                             "and",
                                             "anon",
                                             "anonymous",
                                             "apple",
                                             "applications",
                                             "archive",
                                             "backup",
                                             "backups",
                                             "boot",
                                             "bootcamp",
                                             "computer",
                                             "contact",
                                             "daemon",
                                             "data",
                                             "default",
                                             "demo",
                                             "der",
                                             "desktop",
                                             "die",
                                             "disk",
                                             "documents",
                                             "download",
                                             "downloads",
                                             "efi",
                                             "ethernet",
                                             "example",
                                             "family",
                                             "fax",
                                             "files",
                                             "for",
                                             "guest",
                                             "guest user",
                                             "hardware",
                                             "help",
                                             "hello",
                                             "home",
                                             "host",
                                             "imac",
                                             "imac pro",
                                             "info",
                                             "installer",
                                             "internal",
                                             "iscpreboot",
                                             "laptop",
                                             "library",
                                             "local",
                                             "localhost",
                                             "mac",
                                             "mac hd",
                                             "mac mini",
                                             "mac os x",
                                             "mac pro",
                                             "mac studio",
                                             "macbook",
                                             "macbook air",
                                             "macbook pro",
                                             "macintosh",
                                             "macintosh hd",
                                             "macos",
                                             "mail",
                                             "media",
                                             "mini",
                                             "movies",
                                             "music",
                                             "name",
                                             "network",
                                             "no name",
                                             "nobody",
                                             "null",
                                             "office",
                                             "osx",
                                             "os",
                                             "os x",
                                             "pictures",
                                             "preboot",
                                             "printer",
                                             "pro",
                                             "public",
                                             "recovery",
                                             "recovery hd",
                                             "root",
                                             "sales",
                                             "scratch",
                                             "server",
                                             "service",
                                             "shared",
                                             "software",
                                             "standard",
                                             "storage",
                                             "student",
                                             "studio",
                                             "support",
                                             "system",
                                             "system administrator",
                                             "temp",
                                             "test",
                                             "tester",
                                             "the",
                                             "time machine",
                                             "time machine backups",
                                             "tmp",
                                             "unknown",
                                             "unprivileged user",
                                             "untitled",
                                             "update",
                                             "usb",
                                             "user",
                                             "users",
                                             "utilities",
                                             "van",
                                             "vm",
                                             "volume",
                                             "von",
                                             "web",
                                             "webmaster",
                                             "windows",
                                             "work",
                                             "xarts"};

constexpr std::string_view kUsualFolders[] = {"application support",
                                              "applications",
                                              "bin",
                                              "bookmarks",
                                              "caches",
                                              "colorpickers",
                                              "containers",
                                              "cookies",
                                              "desktop",
                                              "documents",
                                              "downloads",
                                              "extensions",
                                              "fonts",
                                              "frameworks",
                                              "group containers",
                                              "input methods",
                                              "internet plug-ins",
                                              "itunes",
                                              "keychains",
                                              "launchagents",
                                              "library",
                                              "logs",
                                              "mail",
                                              "movies",
                                              "music",
                                              "pictures",
                                              "plug-ins",
                                              "preferencepanes",
                                              "preferences",
                                              "printers",
                                              "public",
                                              "quicklook",
                                              "saved application state",
                                              "screen savers",
                                              "scripts",
                                              "services",
                                              "shared",
                                              "sites",
                                              "sounds",
                                              "spotlight",
                                              "utilities",
                                              "widgets"};

template <size_t count>
bool is_one_of(const std::string_view (&words)[count], std::string_view word) {
  const std::string small = folded(word);
  return std::find(std::begin(words), std::end(words), small) != std::end(words);
}

// "Macintosh HD 2", "Untitled-1": a second volume of the same name gets a number.
std::string_view without_number(std::string_view name) {
  const size_t end = name.find_last_not_of("0123456789");
  if (end == std::string_view::npos || end + 1 == name.size()) return name;
  const bool is_apart = name[end] == ' ' || name[end] == '-';
  return is_apart ? name.substr(0, end) : name;
}

// The volume with people's data, beside the system's: "Macintosh HD - Data".
std::string_view without_data(std::string_view name) {
  constexpr std::string_view kData = " - Data";
  const bool ends_so = name.size() > kData.size() && name.substr(name.size() - kData.size()) == kData;
  return ends_so ? name.substr(0, name.size() - kData.size()) : name;
}

// "disk0s1": what a volume without a name is called.
bool is_device(std::string_view name) {
  return name.substr(0, 4) == "disk" && name.size() > 4 &&
         name.find_first_not_of("0123456789s", 4) == std::string_view::npos;
}

}  // namespace

bool is_common_word(std::string_view name) {
  return is_device(name) || is_one_of(kCommonWords, without_number(without_data(name)));
}

bool is_usual_folder(std::string_view name) { return is_one_of(kUsualFolders, name); }

}  // namespace inv
