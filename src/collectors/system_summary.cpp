#include "collectors/system_summary.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "collectors/edid.h"
#include "collectors/operating_system.h"
#include "collectors/platform_uuid.h"
#include "profiler/plist_access.h"
#include "profiler/units.h"

namespace {

constexpr uint64_t kBytesPerDecimalGb = 1000000000;

Text number_text(double number) { return format_string("%u", truncate_to_uint32(number)); }

Text megabytes(CFDictionaryRef item, CFStringRef key) {
  const Text size = find_text(item, key);
  return size ? number_text(static_cast<float>(size_to_gb_binary(size.get())) * 1024.0f) : nullptr;
}

// ---- Software.

// What is between the first brackets of "Jane Doe (jdoe)".
Text short_user_name(const char* user_name) {
  const char* open = std::strchr(user_name, '(');
  const char* close = open ? std::strchr(open, ')') : nullptr;
  return close ? copy_range(open + 1, close) : nullptr;
}

void read_software(SystemSummary& summary, CFDictionaryRef software) {
  summary.host_name = find_text(software, CFSTR("local_host_name"));
  if (const Text user = find_text(software, CFSTR("user_name")))
    summary.user_name = short_user_name(user.get());
  if (const Text os_version = find_text(software, CFSTR("os_version"))) {
    OsVersion os = parse_os_version(os_version.get());
    summary.os_name = std::move(os.name);
    summary.os_update = std::move(os.update);
    summary.os_version = std::move(os.version);
  }
}

// ---- Hardware.

void read_processors(SystemSummary& summary, CFDictionaryRef hardware) {
  if (const std::optional<int64_t> packages = find_number(hardware, CFSTR("packages"))) {
    const int64_t cores = find_number(hardware, CFSTR("number_processors")).value_or(0);
    summary.processor_packages = number_text(static_cast<double>(*packages));
    summary.processor_cores = number_text(static_cast<double>(cores) * static_cast<double>(*packages));
  }
  if (const Text speed = find_text(hardware, CFSTR("current_processor_speed")))
    summary.clock_speed = number_text(speed_to_mhz(speed.get()));
  summary.processor_type = find_text(hardware, CFSTR("cpu_type"));
  if (summary.processor_type && std::strstr(summary.processor_type.get(), "Intel"))
    summary.processor_vendor = copy_text("GenuineIntel");
}

void read_hardware(SystemSummary& summary, CFDictionaryRef hardware) {
  read_processors(summary, hardware);
  summary.machine_model = find_text(hardware, CFSTR("machine_model"));
  summary.manufacturer = copy_text("Apple Inc.");
  summary.physical_memory = megabytes(hardware, CFSTR("physical_memory"));
}

void take_platform_uuid(SystemSummary& summary, CFDictionaryRef hardware, Text platform_uuid) {
  if (platform_uuid && platform_uuid[0] != '\0') {
    summary.platform_uuid = std::move(platform_uuid);
  } else if (Text known = find_text(hardware, CFSTR("platform_UUID"))) {
    summary.user_name = std::move(known);
  }
}

// ---- Displays.

std::vector<CFDictionaryRef> all_displays(CFArrayRef adapters) {
  std::vector<CFDictionaryRef> displays;
  for (const CFDictionaryRef adapter : dictionaries_in(adapters)) {
    const std::vector<CFDictionaryRef> attached =
        dictionaries_in(find_list(adapter, CFSTR("spdisplays_ndrvs")));
    displays.insert(displays.end(), attached.begin(), attached.end());
  }
  return displays;
}

bool is_main(CFDictionaryRef display) { return text_is(display, CFSTR("spdisplays_main"), "spdisplays_yes"); }

bool has_edid(CFDictionaryRef display) { return find_string(display, CFSTR("_spdisplays_edid")); }

CFDictionaryRef first_display(const std::vector<CFDictionaryRef>& displays,
                              bool (*matches)(CFDictionaryRef)) {
  const auto found = std::find_if(displays.begin(), displays.end(), matches);
  return found == displays.end() ? nullptr : *found;
}

Text diagonal_text(const char* edid) {
  const std::optional<ImageSize> size = edid_image_size(edid);
  return size ? number_text(diagonal_inches(*size)) : nullptr;
}

void read_displays(SystemSummary& summary, CFArrayRef adapters) {
  summary.video_memory = megabytes(dictionary_at(adapters, 0), CFSTR("spdisplays_vram"));
  const std::vector<CFDictionaryRef> displays = all_displays(adapters);
  const CFDictionaryRef main = first_display(displays, is_main);
  summary.display_resolution = find_text(main, CFSTR("spdisplays_resolution"));
  const CFDictionaryRef measured = main ? main : first_display(displays, has_edid);
  if (const Text edid = find_text(measured, CFSTR("_spdisplays_edid")))
    summary.display_diagonal = diagonal_text(edid.get());
}

// ---- Disks.

// A size in GB within the range of single precision; 0 when there is none.
double size_in_gb(CFDictionaryRef item, CFStringRef key) {
  const double size = size_to_gb_binary(find_text(item, key).get());
  return std::isnan(size) ? 0 : std::clamp<double>(size, -FLT_MAX, FLT_MAX);
}

void read_disks(SystemSummary& summary, CFArrayRef controllers) {
  if (!controllers) return;
  double disk_size = 0;
  double volume_size = 0;
  double volume_free = 0;
  for (const CFDictionaryRef controller : dictionaries_in(controllers)) {
    for (const CFDictionaryRef disk : dictionaries_in(find_list(controller, CFSTR("_items")))) {
      const uint64_t bytes = truncate_to_uint64(size_in_gb(disk, CFSTR("size")) * kBytesPerGb);
      disk_size += static_cast<double>(bytes / kBytesPerDecimalGb);
      for (const CFDictionaryRef volume : dictionaries_in(find_list(disk, CFSTR("volumes")))) {
        volume_size += size_in_gb(volume, CFSTR("size"));
        volume_free += size_in_gb(volume, CFSTR("free_space"));
      }
    }
  }
  summary.disk_size = number_text(disk_size);
  summary.volume_size = format_string("%.1f", volume_size);
  summary.volume_free = format_string("%.1f", volume_free);
}

}  // namespace

SystemSummary summarize_system(CFArrayRef list, Text platform_uuid) {
  const CFDictionaryRef hardware = first_item(list, CFSTR("SPHardwareDataType"));
  SystemSummary summary;
  read_software(summary, first_item(list, CFSTR("SPSoftwareDataType")));
  read_hardware(summary, hardware);
  take_platform_uuid(summary, hardware, std::move(platform_uuid));
  read_displays(summary, find_items(list, CFSTR("SPDisplaysDataType")));
  read_disks(summary, find_items(list, CFSTR("SPSerialATADataType")));
  return summary;
}

SystemSummary query_system_summary(CFArrayRef list) { return summarize_system(list, query_platform_uuid()); }
