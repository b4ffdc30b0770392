#include "inv/redact/identifiers.h"

#include <algorithm>

#include "inv/base/byte_reader.h"
#include "inv/base/characters.h"
#include "inv/file/machine.h"
#include "inv/redact/common_words.h"

namespace inv {
namespace {

using Kind = IdentifierKind;

// Directory services number their users from 1000 or far above; a Mac numbers its own from 501, with the
// group 20.
constexpr uint64_t kFirstDirectoryId = 1000;

constexpr std::string_view kNobodysAddresses[] = {"0.0.0.0", "127.0.0.1", "::", "::1"};

// The system's own names; people name theirs after companies and places.
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
                                                   "VPN (Cisco IPSec)",
                                                   "VPN (L2TP)",
                                                   "VPN (PPTP)",
                                                   "Wi-Fi"};

// Constant texts that the scanner writes, and system names that it derives from a digit.
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
std::string_view after_scheme(std::string_view uri) {
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
    case Kind::serial:
    case Kind::number:
      return is_placeholder(text);
    case Kind::account:
      return text.front() == '_' || is_common_word(text);
    case Kind::account_id:
      return is_small_number(text);
    case Kind::addresses:
      return is_one_of(kNobodysAddresses, text) || is_common_word(text);
    case Kind::network_name:
      return is_one_of(kUsualNetworkNames, text) || is_common_word(text);
    case Kind::text:
    case Kind::full_name:
      return is_common_word(text);
    case Kind::uri:
    case Kind::secret:
      return false;
  }
  return false;
}

// The identifier in a separated part; empty if there is none.
std::string_view identifier_of(Kind kind, std::string_view part) {
  std::string_view text = trimmed(part);
  if (kind == Kind::uri) text = after_scheme(text);
  // The adapter that an address belongs to: "fe80::1%en0".
  if (kind == Kind::addresses) text = text.substr(0, text.find('%'));
  return text.empty() || is_nobodys(kind, text) ? std::string_view() : text;
}

// "20120118153045.000000+120", with an offset of one to three digits; "00000003042109.000000:000" is a
// duration.
bool is_time(std::string_view text) {
  constexpr std::string_view kForm = "00000000000000.000000";
  constexpr size_t kMostOffsetDigits = 3;
  if (text.size() < kForm.size() + 2 || text.size() > kForm.size() + 1 + kMostOffsetDigits) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool fits = i == kForm.size() ? std::string_view("+-:").find(text[i]) != std::string_view::npos
                      : i < kForm.size() && kForm[i] == '.' ? text[i] == '.'
                                                            : text[i] >= '0' && text[i] <= '9';
    if (!fits) return false;
  }
  return true;
}

// Whether a part of a name is worth looking for: initials would be found everywhere.
bool is_word_of_name(std::string_view word) {
  constexpr size_t kShortest = 3;
  return word.size() >= kShortest && !is_common_word(word) &&
         word.find_first_not_of("0123456789") != std::string_view::npos;
}

// "Jane", "Doe" of "Jane A. Doe", unless it is one word.
void add_words(std::string_view name, std::vector<std::string_view>& found) {
  constexpr std::string_view kBetween = " ,.;()\"";
  size_t start = 0;
  while (start < name.size()) {
    const size_t end = std::min(name.find_first_of(kBetween, start), name.size());
    const std::string_view word = name.substr(start, end - start);
    if (word.size() < name.size() && is_word_of_name(word)) found.push_back(word);
    start = end + 1;
  }
}

}  // namespace

std::optional<IdentifierKind> Places::kind(Element element, std::string_view attribute) {
  if (element != element_) {
    element_ = element;
    tag_ = find_fact(element);
  }
  const CatalogueFact* fact = attribute.empty() ? tag_ : find_fact_below(tag_, attribute);
  return fact ? fact->identifier : identifier_by_name(attribute.empty() ? element.name() : attribute);
}

std::vector<std::string_view> identifiers_in(IdentifierKind kind, std::string_view value) {
  std::vector<std::string_view> found;
  size_t start = 0;
  for (size_t i = 0; i <= value.size(); ++i) {
    if (i < value.size() && !separates(kind, value[i])) continue;
    const std::string_view identifier = identifier_of(kind, value.substr(start, i - start));
    if (!identifier.empty()) found.push_back(identifier);
    if (kind == Kind::full_name) add_words(identifier, found);
    start = i + 1;
  }
  return found;
}

bool is_scanner_word(std::string_view text) { return is_one_of(kScannerWords, text) || is_time(text); }

}  // namespace inv
