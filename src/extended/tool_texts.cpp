#include "extended/tool_texts.h"

#include <string>

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view without_blanks(std::string_view text) {
  const size_t start = text.find_first_not_of(kBlanks);
  if (start == text.npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

bool starts_with(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

std::string_view after(std::string_view text, std::string_view start) {
  return without_blanks(text.substr(start.size()));
}

// The first line for which `is_sought` holds, without the blanks around it; empty when there is none.
template <typename Predicate>
std::string_view find_line(const char* output, const Predicate& is_sought) {
  std::string_view rest = output ? output : "";
  while (!rest.empty()) {
    const size_t end = rest.find('\n');
    const std::string_view line = without_blanks(rest.substr(0, end));
    if (is_sought(line)) return line;
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  }
  return {};
}

std::string_view find_line_starting(const char* output, std::string_view start) {
  return find_line(output, [&](std::string_view line) { return starts_with(line, start); });
}

// The value on the first line "label: value" or "label = value"; empty when there is none.
std::string_view find_labelled(const char* output, std::string_view label) {
  const std::string_view line = find_line(output, [&](std::string_view candidate) {
    if (!starts_with(candidate, label)) return false;
    const std::string_view value = after(candidate, label);
    return starts_with(value, ":") || starts_with(value, "=");
  });
  if (line.empty()) return line;
  constexpr size_t kMark = 1;
  return without_blanks(after(line, label).substr(kMark));
}

Text copy_view(std::string_view text) {
  return text.empty() ? nullptr : copy_range(text.data(), text.data() + text.size());
}

Text labelled_text(const char* output, std::string_view label) {
  return copy_view(find_labelled(output, label));
}

std::optional<int64_t> labelled_number(const char* output, std::string_view label) {
  return parse_digits(find_labelled(output, label));
}

struct Answer {
  std::string_view start;
  bool on;
};

// From the first of the answers that the text begins with.
template <size_t count>
std::optional<bool> find_answer(std::string_view text, const Answer (&answers)[count]) {
  for (const Answer& answer : answers) {
    if (starts_with(text, answer.start)) return answer.on;
  }
  return std::nullopt;
}

constexpr Answer kYesOrNo[] = {{"Yes", true}, {"No", false}};
constexpr Answer kFlag[] = {{"1", true}, {"0", false}};
constexpr Answer kOnOrOff[] = {{"On", true}, {"Off", false}};
constexpr Answer kEnabledOrDisabled[] = {{"enabled", true}, {"disabled", false}};

// The state that follows `start` on the first line that begins with it.
template <size_t count>
ProtectionState parse_protection(const char* output, std::string_view start, const Answer (&answers)[count]) {
  const std::string_view line = find_line_starting(output, start);
  ProtectionState state;
  if (line.empty()) return state;
  state.on = find_answer(after(line, start), answers);
  state.line = copy_view(line);
  return state;
}

enum class Level { performance, efficiency, other };

Level level_kind(const char* output, int level, const std::string& prefix) {
  const std::string_view name = find_labelled(output, prefix + ".name");
  if (name == "Performance") return Level::performance;
  if (name == "Efficiency") return Level::efficiency;
  if (!name.empty()) return Level::other;
  return level == 0 ? Level::performance : Level::efficiency;
}

void read_level(ProcessorFacts& facts, const char* output, int level) {
  const std::string prefix = "hw.perflevel" + std::to_string(level);
  const std::optional<int64_t> cores = labelled_number(output, prefix + ".physicalcpu");
  if (!cores) return;
  const Level kind = level_kind(output, level, prefix);
  if (kind == Level::performance) facts.performance_cores = cores;
  if (kind == Level::efficiency) facts.efficiency_cores = cores;
}

}  // namespace

SystemVersion parse_sw_vers(const char* output) {
  return {labelled_text(output, "ProductName"), labelled_text(output, "ProductVersion"),
          labelled_text(output, "ProductVersionExtra"), labelled_text(output, "BuildVersion")};
}

ProcessorFacts parse_sysctl(const char* output) {
  ProcessorFacts facts;
  facts.name = labelled_text(output, "machdep.cpu.brand_string");
  facts.physical_cores = labelled_number(output, "hw.physicalcpu");
  facts.logical_cores = labelled_number(output, "hw.logicalcpu");
  constexpr int kLevels = 2;
  for (int level = 0; level < kLevels; ++level) read_level(facts, output, level);
  facts.virtual_machine = find_answer(find_labelled(output, "kern.hv_vmm_present"), kFlag);
  return facts;
}

ProtectionState parse_fdesetup(const char* output) {
  return parse_protection(output, "FileVault is ", kOnOrOff);
}

ProtectionState parse_csrutil(const char* output) {
  return parse_protection(output, "System Integrity Protection status:", kEnabledOrDisabled);
}

ProtectionState parse_spctl(const char* output) {
  return parse_protection(output, "assessments ", kEnabledOrDisabled);
}

Enrollment parse_profiles(const char* output) {
  Enrollment enrollment;
  enrollment.by_program = find_answer(find_labelled(output, "Enrolled via DEP"), kYesOrNo);
  const std::string_view managed = find_labelled(output, "MDM enrollment");
  enrollment.managed = find_answer(managed, kYesOrNo);
  if (enrollment.managed == true) enrollment.user_approved = managed.find("(User Approved)") != managed.npos;
  enrollment.server = labelled_text(output, "MDM server");
  return enrollment;
}

std::optional<bool> parse_rosetta(const char* output) {
  if (!output) return std::nullopt;
  // An error contains the path too, but does not begin with it.
  if (*output == '/') return true;
  if (std::string_view(output).find("No such file or directory") != std::string_view::npos) return false;
  return std::nullopt;
}

std::optional<int64_t> parse_digits(std::string_view text) {
  constexpr size_t kMaximum = 18;  // any such number fits an int64
  if (text.empty() || text.size() > kMaximum) return std::nullopt;
  int64_t number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + (digit - '0');
  }
  return number;
}
