#include "inv/facts/system_name.h"

#include "inv/base/byte_reader.h"

namespace inv {
namespace {

constexpr std::string_view kDigits = "0123456789";

// The number at the beginning of a text.
std::optional<unsigned> leading_number(std::string_view text) {
  const std::optional<uint64_t> number = parse_decimal(text.substr(0, text.find_first_not_of(kDigits)));
  constexpr uint64_t kMost = 99;
  if (!number || *number > kMost) return std::nullopt;
  return static_cast<unsigned>(*number);
}

// "24D60" from "15.3 (24D60)".
std::string_view build_of(std::string_view version) {
  const size_t open = version.find('(');
  if (open == version.npos) return {};
  const std::string_view build = version.substr(open + 1);
  return build.substr(0, build.find(')'));
}

// Without a kernel, the build reveals it: "24D60" begins with the same number.
std::optional<unsigned> darwin_major(const SystemFacts& facts) {
  const std::optional<unsigned> major = darwin_of(facts.kernel);
  return major ? major : leading_number(build_of(facts.version));
}

// Whether the first number in a text is the version or one of its updates. A text without a number
// contradicts nothing, and nothing contradicts an unknown version.
bool agrees(std::string_view text, std::string_view version) {
  const size_t start = text.find_first_of(kDigits);
  if (version.empty() || start == text.npos) return true;
  const std::string_view number = text.substr(start);
  if (number.substr(0, version.size()) != version) return false;
  return number.size() == version.size() || kDigits.find(number[version.size()]) == kDigits.npos;
}

// What Apple called its systems at the time of this kernel.
const char* family_of_darwin(unsigned major) {
  if (major <= 11) return "Mac OS X ";
  return major <= 15 ? "OS X " : "macOS ";
}

std::string recorded_name(const SystemFacts& facts, std::string_view version) {
  const bool whole = !facts.version.empty() && agrees(facts.version, version);
  return facts.name + (whole && !facts.name.empty() ? ", " : "") + (whole ? facts.version : "");
}

std::string name_by_darwin(const SystemFacts& facts, unsigned major, const std::string& version) {
  const bool by_kernel = darwin_of(facts.kernel).has_value();
  const std::string proof = by_kernel ? facts.kernel : std::string(build_of(facts.version));
  return family_of_darwin(major) + version + " (" + proof + ")";
}

}  // namespace

std::optional<unsigned> darwin_of(std::string_view kernel) {
  constexpr std::string_view kDarwin = "Darwin ";
  if (kernel.substr(0, kDarwin.size()) != kDarwin) return std::nullopt;
  return leading_number(kernel.substr(kDarwin.size()));
}

std::string version_of_darwin(unsigned major) {
  if (major < 5 || major > 99) return "";
  if (major <= 19) return "10." + std::to_string(major - 4);
  return std::to_string(major <= 24 ? major - 9 : major + 1);
}

std::string system_name(const SystemFacts& facts) {
  const std::optional<unsigned> major = darwin_major(facts);
  const std::string version = major ? version_of_darwin(*major) : "";
  std::vector<std::string> names = {agrees(facts.name, version) ? recorded_name(facts, version) : ""};
  names.insert(names.end(), facts.reported.begin(), facts.reported.end());
  for (const std::string& name : names) {
    if (!name.empty() && agrees(name, version)) return name;
  }
  return version.empty() ? "" : name_by_darwin(facts, *major, version);
}

}  // namespace inv
