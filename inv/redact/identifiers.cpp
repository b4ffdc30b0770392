#include "inv/redact/identifiers.h"

#include <algorithm>

#include "inv/base/byte_reader.h"

namespace inv {
namespace {

using Kind = IdentifierKind;

// Accounts that run parts of the system; the others of that sort begin with an underscore.
constexpr std::string_view kSystemAccounts[] = {"root", "daemon", "nobody"};

// Directories count their people from 1000 on or far above; a Mac its own from 501, with the group 20.
constexpr uint64_t kFirstDirectoryId = 1000;

constexpr std::string_view kNobodysAddresses[] = {"0.0.0.0", "127.0.0.1", "::", "::1", "localhost", "local"};

// As the system names them; people name their own after firms and places.
constexpr std::string_view kUsualNetworkNames[] = {"AirPort",
                                                   "Bluetooth",
                                                   "Bluetooth DUN",
                                                   "Bluetooth PAN",
                                                   "Bluetooth-Modem",
                                                   "Built-in Ethernet",
                                                   "Display Ethernet",
                                                   "Ethernet",
                                                   "Ethernet 1",
                                                   "Ethernet 2",
                                                   "Ethernet Adaptor",
                                                   "FireWire",
                                                   "Internal Modem",
                                                   "iPhone USB",
                                                   "Modem",
                                                   "Thunderbolt Bridge",
                                                   "Thunderbolt Ethernet",
                                                   "Thunderbolt FireWire",
                                                   "USB Ethernet",
                                                   "Wi-Fi"};

// Folders whose entries are named by people, and what ends such a name beside control characters: short names
// of accounts have no blanks and no typography, names of volumes do.
struct FolderRow {
  std::string_view path;
  std::string_view ends;
  bool holds_typography;
};
constexpr FolderRow kFolders[] = {{"/users/", "/ \"':;,()<>|&", false}, {"/volumes/", "/\"", true}};
// How the quotation marks, dashes and blanks of printed text begin in UTF-8: U+0080 to U+00BF, U+2000 to
// U+203F and U+3000 to U+303F.
constexpr std::string_view kTypography[] = {"\xC2", "\xE2\x80", "\xE3\x80"};
// What neither kind of name contains; a slash among them shows that what comes before it is the whole name.
constexpr std::string_view kEndsOfAnyName = "/\":;<>|";
constexpr std::string_view kSharedFolder = "Shared";

// Constant texts that the scanner writes, and names of systems that it makes up from a digit.
constexpr std::string_view kScannerWords[] = {"mac",
                                              "mac:1",
                                              "12.01.18.0",
                                              "sstService",
                                              "sstNone",
                                              "nstSSH",
                                              "nstNone",
                                              "natMacOS",
                                              "nitMacDesktop",
                                              "nvtPhysical",
                                              "nvtVMware",
                                              "nvtVirtualBox",
                                              "nvtParallels",
                                              "1234567890000",
                                              "Debug scan",
                                              "Apple Inc.",
                                              "GenuineIntel",
                                              "SATA",
                                              "SCSI",
                                              "USB",
                                              "AC Power",
                                              "64-bit",
                                              "32-bit",
                                              "CPU #1",
                                              "bool",
                                              "unknown",
                                              "media-type",
                                              "MFP",
                                              "encrypted",
                                              "GB",
                                              "MB",
                                              "Mac OS X v10.0 (Cheetah)",
                                              "Mac OS X v10.1 (Puma)",
                                              "Mac OS X v10.2 (Jaguar)",
                                              "Mac OS X v10.3 (Panther)",
                                              "Mac OS X v10.4 (Tiger)",
                                              "Mac OS X v10.5 (Leopard)",
                                              "Mac OS X v10.6 (Snow Leopard)",
                                              "Mac OS X v10.7 (Lion)"};

template <size_t count>
bool is_one_of(const std::string_view (&texts)[count], std::string_view text) {
  return std::find(std::begin(texts), std::end(texts), text) != std::end(texts);
}

bool is_control(char character) { return static_cast<unsigned char>(character) < ' ' || character == '\x7F'; }

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool separates(Kind kind, char character) {
  if (is_control(character)) return true;
  return (kind == Kind::account && character == ' ') || (kind == Kind::addresses && character == ',');
}

// "usb://Maker/Model?serial=1": after the scheme and its slashes.
std::string_view behind_scheme(std::string_view uri) {
  const size_t colon = uri.find(':');
  if (colon == std::string_view::npos) return uri;
  const size_t start = uri.find_first_not_of('/', colon + 1);
  return start == std::string_view::npos ? std::string_view() : uri.substr(start);
}

bool is_small_number(std::string_view text) {
  const std::optional<uint64_t> number = parse_decimal(text);
  return number && *number < kFirstDirectoryId;
}

bool is_nobodys(Kind kind, std::string_view text) {
  switch (kind) {
    case Kind::number:
      return text.find_first_not_of('0') == std::string_view::npos;
    case Kind::account:
      return text.front() == '_' || is_one_of(kSystemAccounts, text);
    case Kind::account_id:
      return is_small_number(text);
    case Kind::addresses:
      return is_one_of(kNobodysAddresses, text);
    case Kind::network_name:
      return is_one_of(kUsualNetworkNames, text);
    case Kind::text:
    case Kind::serial:
    case Kind::uri:
      return false;
  }
  return false;
}

// What of a separated part is the identifier; empty for none.
std::string_view identifier_of(Kind kind, std::string_view part) {
  std::string_view text = trimmed(part);
  if (kind == Kind::uri) text = behind_scheme(text);
  // The adapter that an address holds on: "fe80::1%en0".
  if (kind == Kind::addresses) text = text.substr(0, text.find('%'));
  return text.empty() || is_nobodys(kind, text) ? std::string_view() : text;
}

bool begins_with_typography(std::string_view text) {
  return std::any_of(std::begin(kTypography), std::end(kTypography), [text](std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
  });
}

// The beginning of a text up to a control character or one of the others.
std::string_view up_to(std::string_view ends, bool holds_typography, std::string_view text) {
  size_t end = 0;
  while (end < text.size() && !is_control(text[end]) && ends.find(text[end]) == std::string_view::npos &&
         (holds_typography || !begins_with_typography(text.substr(end)))) {
    ++end;
  }
  return text.substr(0, end);
}

// The names that the folder's entry may have whose path goes on so: first the whole one up to a slash, if it
// is longer than the usual one.
std::vector<std::string_view> names_of_entry(const FolderRow& folder, std::string_view text) {
  const std::string_view whole = up_to(kEndsOfAnyName, true, text);
  const std::string_view usual = up_to(folder.ends, folder.holds_typography, text);
  const bool ends_in_slash = whole.size() < text.size() && text[whole.size()] == '/';
  if (ends_in_slash && trimmed(whole).size() > trimmed(usual).size()) return {trimmed(whole), trimmed(usual)};
  return {trimmed(usual)};
}

bool begins_with(std::string_view text, std::string_view small_beginning) {
  if (text.size() < small_beginning.size()) return false;
  return std::equal(
      small_beginning.begin(), small_beginning.end(), text.begin(), [](char small, char character) {
        return small == (character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
      });
}

// "20120118153045.000000+120"
bool is_scan_time(std::string_view text) {
  constexpr std::string_view kForm = "00000000000000.000000+000";
  if (text.size() != kForm.size()) return false;
  for (size_t i = 0; i < kForm.size(); ++i) {
    const bool fits = kForm[i] == '0'   ? text[i] >= '0' && text[i] <= '9'
                      : kForm[i] == '+' ? text[i] == '+' || text[i] == '-'
                                        : text[i] == kForm[i];
    if (!fits) return false;
  }
  return true;
}

}  // namespace

std::optional<IdentifierKind> identifier_kind(Element element, std::string_view attribute) {
  const CatalogueFact* tag = find_fact(element);
  const CatalogueFact* fact = attribute.empty() ? tag : find_fact_below(tag, attribute);
  return fact ? fact->identifier : identifier_by_name(attribute.empty() ? element.name() : attribute);
}

std::vector<std::string_view> identifiers_in(IdentifierKind kind, std::string_view value) {
  std::vector<std::string_view> found;
  size_t start = 0;
  for (size_t i = 0; i <= value.size(); ++i) {
    if (i < value.size() && !separates(kind, value[i])) continue;
    const std::string_view identifier = identifier_of(kind, value.substr(start, i - start));
    if (!identifier.empty()) found.push_back(identifier);
    start = i + 1;
  }
  return found;
}

std::vector<std::string_view> identifiers_in_paths(std::string_view text) {
  std::vector<std::string_view> found;
  for (size_t slash = text.find('/'); slash != std::string_view::npos; slash = text.find('/', slash + 1)) {
    for (const FolderRow& folder : kFolders) {
      if (!begins_with(text.substr(slash), folder.path)) continue;
      for (const std::string_view name : names_of_entry(folder, text.substr(slash + folder.path.size()))) {
        if (!name.empty() && name != kSharedFolder) found.push_back(name);
      }
    }
  }
  return found;
}

bool is_scanner_word(std::string_view text) { return is_one_of(kScannerWords, text) || is_scan_time(text); }

}  // namespace inv
