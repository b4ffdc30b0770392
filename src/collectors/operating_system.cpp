#include "collectors/operating_system.h"

#include <algorithm>
#include <cstring>

#include "collectors/fields.h"
#include "profiler/units.h"

namespace {

// Where "Mac OS X 10.6.8 (10K549)" has its version, the digit of its minor version, and what follows that.
constexpr size_t kVersionPosition = 9;
constexpr size_t kMinorPosition = 12;
constexpr size_t kUpdatePosition = 14;

constexpr const char* kNames[] = {"Mac OS X v10.0 (Cheetah)",      "Mac OS X v10.1 (Puma)",
                                  "Mac OS X v10.2 (Jaguar)",       "Mac OS X v10.3 (Panther)",
                                  "Mac OS X v10.4 (Tiger)",        "Mac OS X v10.5 (Leopard)",
                                  "Mac OS X v10.6 (Snow Leopard)", "Mac OS X v10.7 (Lion)"};

const char* name_of(const char* os_version, size_t length) {
  const char minor = length > kMinorPosition ? os_version[kMinorPosition] : '\0';
  return minor >= '0' && minor <= '7' ? kNames[minor - '0'] : os_version;
}

Text update_of(const char* os_version, size_t length) {
  if (length < kUpdatePosition) return nullptr;
  const char* rest = os_version + kUpdatePosition;
  return std::strchr(rest, ' ') ? format_string("Update %s", copy_word(rest).get())
                                : format_string("Version(build) %s", rest);
}

// The interval in the console's form: days, hours, minutes, seconds, fraction.
Text interval_text(int64_t seconds) {
  const auto part = [seconds](int64_t whole, int64_t unit) {
    return static_cast<int>(seconds % whole / unit);
  };
  return format_string("%08lld%02d%02d%02d.000000:000", static_cast<long long>(seconds / 86400),
                       part(86400, 3600), part(3600, 60), part(60, 1));
}

void set_text(Place& element, const char* name, const Text& text) {
  if (text) element.set_attribute(name, text_value(text.get()));
}

}  // namespace

OsVersion parse_os_version(const char* os_version) {
  const size_t length = std::strlen(os_version);
  return {copy_text(name_of(os_version, length)), copy_text(os_version + std::min(length, kVersionPosition)),
          update_of(os_version, length)};
}

int64_t parse_uptime(const char* uptime) {
  // Read from the seconds backwards, since a short uptime leaves the days out. The sums are doubles, which an
  // absurd figure cannot overflow.
  double total = 0;
  double field = 0;
  double digit_weight = 1;
  double field_weight = 1;
  for (size_t position = std::strlen(uptime); position-- > 1;) {
    const char character = uptime[position];
    if (character == ':' || character == ' ') {
      total += field * field_weight;
      if (character == ' ') break;
      field_weight = field_weight < 3600 ? field_weight * 60 : 86400;
      field = 0;
      digit_weight = 1;
    } else {
      if (character > '0' && character <= '9') field += (character - '0') * digit_weight;
      digit_weight *= 10;
    }
  }
  return truncate_to_int64(total);
}

void collect_os(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* item = first_item(profiler, "SPSoftwareDataType");
  if (!item) return;
  const char* os_version = find_text(*item, "os_version");
  const OsVersion version = os_version ? parse_os_version(os_version) : OsVersion();

  Place os(snapshot.root(), "/OS/os:1");
  os.set_value(version.name ? text_value(version.name.get()) : Value());
  os.annotate("kind", "mac");
  set_text(os, "name", version.name);
  set_text(os, "version", version.version);
  set_text(os, "update", version.update);
  copy_field(os, "kernel", *item, "kernel_version");
  os.set_attribute("manuf", text_value("Apple Inc."));
  if (const char* uptime = find_text(*item, "uptime"))
    os.set_attribute("uptime", text_value(interval_text(parse_uptime(uptime)).get()));
  if (const char* wide = find_text(*item, "64bit_kernel_and_kexts"))
    os.set_attribute("architecture", text_value(std::strcmp(wide, "yes") == 0 ? "64-bit" : "32-bit"));
}
