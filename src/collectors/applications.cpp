#include "collectors/applications.h"

#include <cstring>
#include <string>

#include "collectors/fields.h"

namespace {

// The date part of "20120118153045.000000+120".
constexpr size_t kDayLength = 8;

// An empty text with an annotation that says that the profiler did not report it.
void set_unknown(Place& application, const char* name) {
  application.set_attribute(name, text_value(""), "type", "unknown");
}

void copy_or_unknown(Place& application, const char* name, const Tag& item, const char* key) {
  if (const Value* value = find_value(item, key)) {
    application.set_attribute(name, *value);
  } else {
    set_unknown(application, name);
  }
}

void set_installation_day(Place& application, const Tag& item) {
  char* date = find_date(item, "lastModified");
  if (!date) return set_unknown(application, "inst-date");
  if (std::strlen(date) > kDayLength) date[kDayLength] = '\0';
  application.set_attribute("inst-date", text_value(date));
}

void set_width(Place& application, const Tag& item) {
  const char* wide = find_text(item, "has64BitIntelCode");
  if (!wide) return set_unknown(application, "64bit-app");
  if (equal_text(wide, "yes")) application.set_attribute("64bit-app", yes_no(true));
}

void write_application(Place& application, const Tag& item) {
  copy_element_value(application, item, "_name");
  copy_or_unknown(application, "version", item, "version");
  set_installation_day(application, item);
  copy_or_unknown(application, "runtime-environment", item, "runtime_environment");
  copy_field(application, "info", item, "info");
  set_width(application, item);
  copy_field(application, "location", item, "path");
}

}  // namespace

void collect_applications(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* items = find_items(profiler, "SPApplicationsDataType");
  if (!items) return;
  Place software(snapshot.root(), "/Software");
  int number = 0;
  for (const auto& item : items->children()) {
    Place application(software, "Soft:" + std::to_string(++number), Place::Names::distinct);
    write_application(application, *item);
  }
}
