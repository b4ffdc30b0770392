// What only the stand-in has: the order of dictionaries, and what it takes from a Linux machine.
#include <SystemConfiguration/SystemConfiguration.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "contract/environment.h"
#include "contract/objects.h"
#include "fake_tools.h"
#include "platform/corefoundation/time_zone.h"

namespace {

// The tool of the computer name, as a shell script.
class NameTool {
 public:
  explicit NameTool(const std::string& script) { tools_.write("scutil", script); }

 private:
  const FakeTools tools_;
};

std::string computer_name() {
  CFStringEncoding encoding = 0;
  const CFRef<CFStringRef> name(SCDynamicStoreCopyComputerName(nullptr, &encoding));
  EXPECT_EQ(encoding, kCFStringEncodingUTF8);
  return bytes_of_string(name.get());
}

std::string host_name() {
  char name[256] = "";
  gethostname(name, sizeof name - 1);
  return name;
}

std::string current_locale() {
  const CFRef<CFLocaleRef> locale(CFLocaleCopyCurrent());
  return bytes_of_string(CFLocaleGetIdentifier(locale.get()));
}

std::vector<std::string> keys_of(const std::string& list) {
  const CFRef<CFPropertyListRef> tree = parse_list(list);
  const CFDictionaryRef dictionary = static_cast<CFDictionaryRef>(tree.get());
  std::vector<const void*> keys(static_cast<size_t>(CFDictionaryGetCount(dictionary)));
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), nullptr);
  std::vector<std::string> texts;
  for (const void* key : keys) texts.push_back(bytes_of_string(static_cast<CFStringRef>(key)));
  return texts;
}

// A folder with a link such as /etc/localtime, gone after the test.
class LocalTime {
 public:
  explicit LocalTime(const std::string& target) { std::filesystem::create_symlink(target, link_); }
  const char* link() const { return link_.c_str(); }

 private:
  const FakeTools folder_;
  const std::string link_ = folder_.file("localtime");
};

size_t open_descriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)));
}

TEST(ComputerName, IsWhatTheToolPrints) {
  const NameTool tool("[ \"$*\" = '--get ComputerName' ] && echo \"Anna's iMac\"\n");
  EXPECT_EQ(computer_name(), "Anna's iMac");
}

TEST(ComputerName, IsTheHostNameWithoutTheTool) {
  const EnvironmentVariable no_tools("PATH", "/nowhere");
  EXPECT_EQ(computer_name(), host_name());
}

TEST(ComputerName, IsTheHostNameWhenTheToolPrintsNothing) {
  const NameTool tool("exit 1\n");
  EXPECT_EQ(computer_name(), host_name());
}

TEST(ComputerName, IsOneLineOfUtf8) {
  const NameTool tool("printf 'B\\374ro\\nsecond line\\n'\n");
  EXPECT_EQ(computer_name(), "B\xEF\xBF\xBDro");
}

TEST(ComputerName, IsCutOffWhereTheToolPrintsForever) {
  const NameTool tool(
      "while echo endless-; do :; done | { while read -r line; do printf %s \"$line\"; done; }\n");
  EXPECT_EQ(computer_name().substr(0, 8), "endless-");
}

TEST(ComputerName, LeavesNoDescriptorOpen) {
  const NameTool tool("echo name\n");
  const size_t before = open_descriptors();
  computer_name();
  EXPECT_EQ(open_descriptors(), before);
}

TEST(CurrentLocale, IsThatOfTheEnvironment) {
  const EnvironmentVariable all("LC_ALL", nullptr), time("LC_TIME", "th_TH.UTF-8"),
      language("LANG", "de_DE.UTF-8");
  EXPECT_EQ(current_locale(), "th_TH");
  {
    const EnvironmentVariable stronger("LC_ALL", "fa_IR@some");
    EXPECT_EQ(current_locale(), "fa_IR");
  }
  const EnvironmentVariable no_time("LC_TIME", "");
  EXPECT_EQ(current_locale(), "de_DE");
}

TEST(CurrentLocale, IsPlainWithoutOne) {
  const EnvironmentVariable all("LC_ALL", nullptr), time("LC_TIME", nullptr), language("LANG", nullptr);
  EXPECT_EQ(current_locale(), "en_US_POSIX");
  for (const char* plain : {"C", "POSIX", "C.UTF-8"}) {
    const EnvironmentVariable stronger("LC_ALL", plain);
    EXPECT_EQ(current_locale(), "en_US_POSIX") << plain;
  }
}

TEST(TimeZone, IsTheOneThatTheEnvironmentNames) {
  const LocalTime local("/usr/share/zoneinfo/Asia/Kolkata");
  EXPECT_EQ(cf::time_zone("Europe/Berlin", local.link()), u"Europe/Berlin");
  EXPECT_EQ(cf::time_zone(":Europe/Berlin", local.link()), u"Europe/Berlin");
  EXPECT_EQ(cf::time_zone("UTC", local.link()), u"UTC");
}

TEST(TimeZone, IsTheMachinesOwnWhereTheEnvironmentNamesNone) {
  for (const char* folder :
       {"/usr/share/zoneinfo/", "../usr/share/zoneinfo/", "/var/db/timezone/zoneinfo/"}) {
    const LocalTime local(std::string(folder) + "Asia/Kolkata");
    EXPECT_EQ(cf::time_zone(nullptr, local.link()), u"Asia/Kolkata") << folder;
    for (const char* unknown : {"Nowhere/Land", "CET-1CEST", "", ":"})
      EXPECT_EQ(cf::time_zone(unknown, local.link()), u"Asia/Kolkata") << unknown;
  }
}

TEST(TimeZone, IsLookedForWhereNoLinkNamesIt) {
  const EnvironmentVariable zone("TZ", "Europe/Berlin");
  EXPECT_EQ(cf::time_zone(nullptr, "/nowhere/localtime"), u"Europe/Berlin");
  EXPECT_EQ(cf::time_zone(nullptr, LocalTime("/somewhere/else").link()), u"Europe/Berlin");
}

std::string current_calendar() {
  const CFRef<CFCalendarRef> calendar(CFCalendarCopyCurrent());
  EXPECT_EQ(CFGetTypeID(calendar.get()), CFCalendarGetTypeID());
  return bytes_of_string(CFCalendarGetIdentifier(calendar.get()));
}

TEST(CurrentCalendar, IsThatOfTheLocale) {
  const std::pair<const char*, const char*> calendars[] = {
      {"en_US.UTF-8", "gregorian"}, {"th_TH", "buddhist"}, {"fa_IR", "persian"}, {"C", "gregorian"}};
  for (const auto& [locale, calendar] : calendars) {
    const EnvironmentVariable all("LC_ALL", locale);
    EXPECT_EQ(current_calendar(), calendar) << locale;
  }
}

TEST(SystemTimeZone, IsTheOneOfTheEnvironment) {
  const EnvironmentVariable variable("TZ", "Europe/Berlin");
  const CFRef<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  EXPECT_EQ(CFGetTypeID(zone.get()), CFTimeZoneGetTypeID());
  EXPECT_EQ(bytes_of_string(CFTimeZoneGetName(zone.get())), "Europe/Berlin");
}

TEST(DictionaryOrder, IsThatOfTheDocument) {
  EXPECT_EQ(keys_of("<dict><key>z</key><true/><key>a</key><true/><key>m</key><true/></dict>"),
            (std::vector<std::string>{"z", "a", "m"}));
}

TEST(DictionaryOrder, HasRepeatedKeysAtTheirFirstPlace) {
  std::string pairs;
  std::vector<std::string> expected;
  for (int i = 40; i > 0; --i) {
    expected.push_back("key " + std::to_string(i));
    pairs += "<key>" + expected.back() + "</key><true/>";
  }
  EXPECT_EQ(keys_of("<dict>" + pairs + pairs + "</dict>"), expected);
  EXPECT_EQ(keys_of("<dict><key>b</key><true/><key>a</key><true/><key>b</key><true/></dict>"),
            (std::vector<std::string>{"b", "a"}));
}

TEST(PropertyListErrors, NameTheLine) {
  CFRef<CFStringRef> message;
  EXPECT_FALSE(parse_list("<array>\n<true/>\n<foo/>\n</array>", &message));
  EXPECT_EQ(bytes_of_string(message.get()), "unknown element on line 3");
}

}  // namespace
