// Makes the files of a fleet out of a few scanned ones, for tests and benchmarks:
//
//   make_fleet FOLDER COUNT SCAN.inv...
//
// Three scans of each Mac, a week apart. Every Mac has names, numbers, versions and times of its own;
// applications, disks and processes come and go between its scans. Scans that list few applications get more
// of them, as Macs in use have. The same arguments make the same files.
//
// Among the Macs are some that were not seen for a while, that have no disk encryption or got it between two
// scans, that share a serial number, and whose users are administrators.
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "driver/base/text.h"
#include "inv/base/output_file.h"
#include "inv/facts/path_trail.h"
#include "inv/file/container_writer.h"
#include "inv/file/inventory.h"

namespace {

constexpr size_t kScansOfAMac = 3;
constexpr size_t kFilesInAFolder = 1000;
// Every scan lists at least this many applications before it is varied; every ninth of those added is
// unsigned.
constexpr size_t kFewestApplications = 120;
constexpr size_t kUnsigned = 9;
// At least this many facts of each file differ from the original scan, or it would not be a fleet.
constexpr size_t kFewestChanges = 300;

// A pseudo-random number that depends only on its purpose and its owner.
uint64_t number_for(std::string_view what, uint64_t whom) {
  uint64_t hash = 1'469'598'103'934'665'603u ^ whom * 0x9E3779B97F4A7C15u;
  for (const char character : what)
    hash = (hash ^ static_cast<unsigned char>(character)) * 1'099'511'628'211u;
  return hash ^ hash >> 29;
}

std::string digits(const char* format, uint64_t number) {
  return format_string(format, static_cast<unsigned long long>(number)).get();
}

// A Mac, and which of its scans.
struct Moment {
  uint64_t mac;
  uint64_t scan;

  uint64_t of_mac(std::string_view what) const { return number_for(what, mac); }
  uint64_t of_scan(std::string_view what) const { return number_for(what, mac * kScansOfAMac + scan); }
  // Every 50th Mac has the serial number of the one before it.
  uint64_t serial() const { return mac % 50 == 49 ? mac - 1 : mac; }
  // Last seen in January; the others were scanned in March.
  bool is_lost() const { return mac % 9 == 4; }
  bool is_encrypted() const { return of_mac("encryption") % 3 != 0 || has_happened("encryption", 6); }
  // Changes that affect one in this many things in the second or third scan, and persist.
  bool has_happened(std::string_view what, uint64_t one_in) const {
    return of_mac(what) % one_in == 0 && scan >= 1 + of_mac(what) / one_in % 2;
  }
};

// Local time in one of the zones that the fleet is in, in the form of the scanner.
std::string timestamp(const Moment& moment) {
  constexpr int kOffsets[] = {0, 60, 120, 330, 540, -300, -480};
  const int offset = kOffsets[moment.of_mac("zone") % std::size(kOffsets)];
  const uint64_t second = moment.of_scan("time") % 86'400;
  const uint64_t day = 1 + 7 * moment.scan + moment.of_mac("day") % 7;
  return format_string("2026%02u%02u%02u%02u%02u.000000%c%d", moment.is_lost() ? 1u : 3u,
                       static_cast<unsigned>(day), static_cast<unsigned>(second / 3600),
                       static_cast<unsigned>(second / 60 % 60), static_cast<unsigned>(second % 60),
                       offset < 0 ? '-' : '+', std::abs(offset))
      .get();
}

bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// A Mac's value at a path instead of the scan's; std::nullopt if all Macs have the same.
std::optional<std::string> value_for(std::string_view kind, std::string_view path, std::string_view value,
                                     const Moment& moment) {
  const std::string name = "mac-" + digits("%05llu", moment.mac);
  const auto is = [kind](std::string_view other) { return kind == other; };
  if (is("/timestamp") || ends_with(kind, "-scan") || is("AssetInfo/snapshot-list")) return timestamp(moment);
  if (value.empty()) return std::nullopt;
  if (is("/System/Chassis/serial") || is("AssetInfo/serial-number"))
    return "SIM0" + digits("%08llu", moment.serial());
  if (ends_with(kind, "uuid") && value.size() == 36) {
    return digits("%08llX", moment.of_mac("uuid") & 0xFFFFFFFF) + "-0000-4000-8000-" +
           digits("%012llX", moment.mac);
  }
  if (ends_with(kind, "hostname") || is("AssetInfo/int-name") || is("AssetInfo/alias")) return name;
  if (ends_with(kind, "mac-address")) {
    return digits("00-00-5E-%02llX", moment.mac >> 16 & 0xFF) + digits("-%02llX", moment.mac >> 8 & 0xFF) +
           digits("-%02llX", moment.mac & 0xFF);
  }
  if (ends_with(kind, "ip-address")) {
    return "192.0.2." + std::to_string(1 + moment.of_scan("address") % 254);
  }
  if (is("/Security/Platform/filevault")) return moment.is_encrypted() ? "1" : "0";
  if (is("/Security/Platform/filevault-status")) {
    return moment.is_encrypted() ? "FileVault is On." : "FileVault is Off.";
  }
  if (is("/User-accounts/usr-acc/group")) return moment.of_mac(path) % 10 == 0 ? "80" : "20";
  if (is("/Video/Monitors/Monitor/model")) {
    return std::string(value) + " " + std::to_string(20 + moment.of_mac(path) % 5);
  }
  if (is("/Software/Soft/version")) {
    // An application has one of a few versions, and is updated now and then.
    const uint64_t newer = moment.has_happened(path, 8) ? 1 : 0;
    return std::to_string(1 + number_for(path, 0) % 15) + "." + std::to_string(moment.of_mac(path) % 12) +
           "." + std::to_string(newer);
  }
  if (is("/Software/Soft/info"))
    return std::string(value) + ", build " + std::to_string(moment.of_mac(path) % 4000);
  if (is("/Software/Soft/inst-date")) {
    return digits("2025%02llu", 1 + moment.of_mac(path) % 12) +
           digits("%02llu", 1 + moment.of_mac(path) / 12 % 28);
  }
  if (kind.substr(0, 10) == "/Processes" && (ends_with(kind, "/pid") || ends_with(kind, "/ppid"))) {
    return std::to_string(100 + moment.of_scan(path) % 60'000);
  }
  if (is("/Storage/Logical-disks/partition/free") || is("/Storage/Logical-disks/partition/used%")) {
    return std::to_string(moment.of_scan(path) % 100);
  }
  if (kind.substr(0, 24) == "/Storage/Physical-disks/" && ends_with(kind, "/serial")) {
    return "SIMD" +
           digits("%08llu", moment.of_mac(moment.has_happened("disk", 10) ? "new disk" : path) % 100'000'000);
  }
  return std::nullopt;
}

// Whether a Mac has the thing at this path in this scan.
bool is_there(std::string_view kind, std::string_view path, const Moment& moment) {
  if (kind == "/Software/Soft" || kind == "/Software-details/Soft") {
    const std::string application(path.substr(path.rfind('/')));
    const uint64_t place = moment.of_mac(application);
    const bool has_come = place % 20 != 1 || moment.scan >= 1 + place / 20 % 2;
    return place % 20 != 0 && has_come && !moment.has_happened(application, 30);
  }
  if (kind == "/Processes/process") return moment.of_scan(path) % 6 != 0;
  return true;
}

// A text with some of its parts replaced, from the front to the back.
class EditedText {
 public:
  explicit EditedText(const std::string& text) : text_(text) {}

  // Parts are views of the text.
  void replace(std::string_view part, std::string_view replacement) {
    edited_.append(text_, done_, offset(part) - done_).append(replacement);
    done_ = offset(part) + part.size();
    ++changes_;
  }
  // Leaves out a tag without children, whose name is given, with its line and those of its attributes.
  void remove_tag(std::string_view name) {
    const size_t start = offset(name) - 1;
    size_t end = text_.find('\n', start) + 1;
    while (std::string_view("*+-").find(text_[end]) == std::string_view::npos)
      end = text_.find('\n', end) + 1;
    replace(std::string_view(text_).substr(start, end - start), "");
  }

  std::string finish() { return edited_.append(text_, done_, std::string::npos); }
  size_t changes() const { return changes_; }

 private:
  size_t offset(std::string_view part) const { return static_cast<size_t>(part.data() - text_.data()); }

  const std::string& text_;
  std::string edited_;
  size_t done_ = 0;
  size_t changes_ = 0;
};

// The lines before the end of a list of tags without children, after them what is to be added.
std::string with_added(std::string text, std::string_view list, const std::string& added) {
  const size_t start = text.find("\n+" + std::string(list) + "=\n");
  if (start == text.npos) return text;
  return text.insert(text.find("\n-\n", start) + 1, added);
}

std::string application(size_t number) {
  const std::string name = "Example Tool " + std::to_string(number);
  return "*Soft:" + std::to_string(number) + "=" + name + "\nversion=1.0\ninst-date=20250101\ninfo=" + name +
         "\nlocation=/Applications/" + name + ".app\n";
}

std::string details_of_application(size_t number) {
  const std::string tag = "*Soft:" + std::to_string(number) + "=\n";
  if (number % kUnsigned == 0) return tag + "source=unknown\n";
  return tag + "source=identified_developer\nsigned-by=Developer ID Application: Example\n";
}

size_t count_of(const inv::Document& document, std::string_view kind) {
  inv::PathTrail trail;
  size_t count = 0;
  for (const inv::Record& record : document.top().subtree()) {
    trail.enter(inv::Element(&record));
    if (trail.kind() == kind) ++count;
  }
  return count;
}

// The scan with more applications, where there are few.
std::unique_ptr<inv::Inventory> with_applications(const inv::Inventory& scan) {
  std::vector<inv::TreeText> trees;
  for (size_t i = 0; i < scan.contents.size(); ++i) {
    const inv::Section& section = scan.container->sections[i];
    if (!scan.contents[i].document) continue;
    std::string applications, details;
    for (size_t number = 1 + count_of(*scan.contents[i].document, "/Software/Soft");
         number <= kFewestApplications; ++number) {
      applications += application(number);
      details += details_of_application(number);
    }
    const std::string text = with_added(scan.contents[i].document->text(), "Software", applications);
    trees.push_back({section.kind, with_added(text, "Software-details", details),
                     std::string(section.timestamp), section.snaptype});
  }
  return inv::open_inventory(scan.file_name, inv::write_container(trees), inv::kUsualMaxSize);
}

std::string varied(const inv::Document& document, const Moment& moment, size_t& changes) {
  EditedText text(document.text());
  inv::PathTrail trail;
  for (const inv::Record& record : document.top().subtree()) {
    const inv::Element tag(&record);
    trail.enter(tag);
    if (!tag.branch() && !is_there(trail.kind(), trail.path(), moment)) {
      text.remove_tag(tag.name());
      continue;
    }
    for (const inv::Attribute& attribute : tag.attributes()) {
      trail.enter(attribute);
      const auto value = value_for(trail.kind(), trail.path(), attribute.value, moment);
      if (value && *value != attribute.value) text.replace(attribute.value, *value);
    }
  }
  changes += text.changes();
  return text.finish();
}

std::string vary(const inv::Inventory& scan, const Moment& moment) {
  std::vector<inv::TreeText> trees;
  size_t changes = 0;
  for (size_t i = 0; i < scan.contents.size(); ++i) {
    const inv::Section& section = scan.container->sections[i];
    if (!scan.contents[i].document) continue;
    trees.push_back({section.kind, varied(*scan.contents[i].document, moment, changes), timestamp(moment),
                     section.snaptype});
  }
  if (changes >= kFewestChanges) return inv::write_container(trees);
  std::fprintf(stderr, "make_fleet: %s: only %zu of its facts would differ\n", scan.file_name.c_str(),
               changes);
  std::exit(EXIT_FAILURE);
}

std::string folder_of(const std::string& folder, size_t file) {
  const std::string path = folder + "/" + digits("%03llu", file / kFilesInAFolder);
  mkdir(folder.c_str(), 0700);
  mkdir(path.c_str(), 0700);
  return path;
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::unique_ptr<inv::Inventory>> scans;
  for (int i = 3; i < count; ++i) {
    std::string error;
    scans.push_back(inv::open_file(arguments[i], inv::kUsualMaxSize, &error));
    if (scans.back() && scans.back()->faults.empty()) {
      scans.back() = with_applications(*scans.back());
      continue;
    }
    std::fprintf(stderr, "make_fleet: %s %s\n", arguments[i], error.empty() ? "is damaged" : error.c_str());
    return EXIT_FAILURE;
  }
  if (scans.empty()) {
    std::fputs("make_fleet FOLDER COUNT SCAN.inv...\n", stderr);
    return EXIT_FAILURE;
  }
  const size_t files = std::strtoul(arguments[2], nullptr, 10);
  for (size_t i = 0; i < files; ++i) {
    const Moment moment = {i / kScansOfAMac, i % kScansOfAMac};
    const std::string path = folder_of(arguments[1], i) + "/mac-" + digits("%05llu", moment.mac) + "-" +
                             std::to_string(moment.scan) + ".inv";
    if (inv::write_file(path, vary(*scans[moment.mac % scans.size()], moment))) continue;
    std::perror(path.c_str());
    return EXIT_FAILURE;
  }
}
