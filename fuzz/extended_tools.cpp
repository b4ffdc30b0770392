// The output of the small tools that only the extended scan runs: any of them may print anything.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "extended/tool_texts.h"

namespace {

void expect(bool holds) {
  if (!holds) std::abort();
}

// A text is a piece of one line of the output, without the blanks around it.
void expect_piece(const char* output, const Text& text) {
  if (!text) return;
  const char* bytes = text.get();
  expect(*bytes != '\0' && std::strstr(output, bytes));
  expect(!std::strchr(bytes, '\n'));
  expect(!std::strchr(" \t\r", bytes[0]) && !std::strchr(" \t\r", bytes[std::strlen(bytes) - 1]));
}

void expect_count(std::optional<int64_t> number) { expect(!number || *number >= 0); }

void check_sw_vers(const char* output) {
  const SystemVersion version = parse_sw_vers(output);
  expect_piece(output, version.name);
  expect_piece(output, version.version);
  expect_piece(output, version.version_extra);
  expect_piece(output, version.build);
}

void check_sysctl(const char* output) {
  const ProcessorFacts facts = parse_sysctl(output);
  expect_piece(output, facts.name);
  expect_count(facts.physical_cores);
  expect_count(facts.logical_cores);
  expect_count(facts.performance_cores);
  expect_count(facts.efficiency_cores);
}

void check_protection(const char* output, ProtectionState (*parse)(const char*)) {
  const ProtectionState state = parse(output);
  expect_piece(output, state.line);
  expect(state.line || !state.on);
}

void check_profiles(const char* output) {
  const Enrollment enrollment = parse_profiles(output);
  expect_piece(output, enrollment.server);
  expect(enrollment.user_approved.has_value() == (enrollment.managed == true));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const char* start = reinterpret_cast<const char*>(bytes);
  const Text output = copy_range(start, start + size);
  check_sw_vers(output.get());
  check_sysctl(output.get());
  for (const auto parse : {parse_fdesetup, parse_csrutil, parse_spctl}) check_protection(output.get(), parse);
  check_profiles(output.get());
  parse_rosetta(output.get());
  return 0;
}
