#include "extended/scan_record.h"

#include <CoreFoundation/CoreFoundation.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include "collectors/fields.h"
#include "driver/base/version.h"
#include "platform/cf_ref.h"
#include "profiler/plist_access.h"
#include "zxml/place.h"

namespace {

void write_string(Place& element, const char* name, CFStringRef string) {
  if (string) element.set_attribute(name, text_value(cfstring_to_text(string).get()));
}

void write_omissions(Place& scan, const Omissions& omitted) {
  const std::string words = omitted_words(omitted);
  if (!words.empty()) scan.set_attribute("left-out", text_value(words.c_str()));
}

void write_user(Place& scan) {
  const passwd* user = getpwuid(geteuid());
  if (user) scan.set_attribute("effective-user", text_value(user->pw_name));
  scan.set_attribute("effective-uid", Value(static_cast<int64_t>(geteuid())));
}

void write_region(Place& scan) {
  const CFRef<CFLocaleRef> locale(CFLocaleCopyCurrent());
  if (locale) write_string(scan, "locale", CFLocaleGetIdentifier(locale.get()));
  const CFRef<CFCalendarRef> calendar(CFCalendarCopyCurrent());
  if (calendar) write_string(scan, "calendar", CFCalendarGetIdentifier(calendar.get()));
  const CFRef<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  if (zone) write_string(scan, "time-zone", CFTimeZoneGetName(zone.get()));
}

void write_yes(Place& element, const char* name, bool yes) {
  if (yes) element.set_attribute(name, yes_no(true));
}

// Nothing for a command that the scanner itself ended.
void write_status(Place& element, const CommandEnd& end) {
  if (end.cut || end.silent) return;
  if (const int signal_number = ending_signal(end)) {
    element.set_attribute("signal", Value(int64_t{signal_number}));
  } else {
    element.set_attribute("exit-status", Value(int64_t{WEXITSTATUS(end.status)}));
  }
}

void write_runs(Place& element, const CommandRecord& record) {
  write_status(element, record.last);
  element.set_attribute("bytes", Value(static_cast<int64_t>(record.bytes)));
  element.set_attribute("seconds", Value(record.seconds));
  if (record.is_series) {
    element.set_attribute("runs", Value(int64_t{record.runs}));
  } else {
    element.set_attribute("retries", Value(int64_t{record.runs} - 1));
  }
  write_yes(element, "salvaged", record.salvaged);
  write_yes(element, "cut", record.last.cut);
  write_yes(element, "silent", record.last.silent);
  write_yes(element, "missing", names_no_tool(record.last));
  write_yes(element, "refused", record.last.refused);
}

void write_command(Place& element, const CommandRecord& record) {
  element.set_value(text_value(record.command.c_str()));
  element.set_attribute("run", yes_no(record.runs > 0));
  if (record.runs > 0) write_runs(element, record);
}

}  // namespace

void collect_scan_record(InventoryTree& snapshot, const char* options,
                         const std::vector<CommandRecord>& commands, const Omissions& omitted) {
  Place scan(snapshot.root(), "/Scan");
  scan.set_attribute("scanner-version", text_value(kVersion));
  scan.set_attribute("options", text_value(options));
  write_omissions(scan, omitted);
  if (!omitted.people) write_user(scan);
  write_region(scan);
  int number = 0;
  for (const CommandRecord& record : commands) {
    Place command(scan, "Command:" + std::to_string(++number), Place::Names::distinct);
    write_command(command, record);
  }
}
