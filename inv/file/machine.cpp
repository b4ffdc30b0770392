#include "inv/file/machine.h"

#include <algorithm>

#include "inv/base/characters.h"
#include "inv/file/debug_output.h"
#include "inv/file/timestamp.h"

namespace inv {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// What makers and virtual machines leave where a serial number or a UUID should be, in small letters.
constexpr std::string_view kPlaceholders[] = {"not available",
                                              "not specified",
                                              "not applicable",
                                              "system serial#",
                                              "system serial number",
                                              "serial number",
                                              "default string",
                                              "none",
                                              "n/a",
                                              "unknown",
                                              "invalid",
                                              "(null)",
                                              "to be filled by o.e.m.",
                                              "0123456789",
                                              "123456789",
                                              "1234567890"};

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  return first == text.npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string first_of(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    if (!text.empty()) return std::string(text);
  }
  return std::string();
}

std::string first_identifying(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    if (!is_placeholder(trimmed(text))) return std::string(trimmed(text));
  }
  return std::string();
}

// What a debug run has stored without evaluating it.
struct Profiled {
  std::string_view serial;
  std::string_view uuid;
};

Profiled profiled(const Inventory& inventory) {
  const std::string* output = inventory.raw_data();
  if (!output) return {};
  for (const DataType& type : split_profiler_output(*output)) {
    if (type.name != "SPHardwareDataType") continue;
    return {text_of_key(type.dict, "serial_number"), text_of_key(type.dict, "platform_UUID")};
  }
  return {};
}

std::string name_and_address(const Inventory& inventory) {
  const Element asset = inventory.asset_top();
  const std::string name =
      first_of({inventory.snapshot_top().text("hostname"), asset.text("hostname"), asset.text("int-name")});
  const std::string_view address = asset.text("mac-address");
  if (name.empty() || address.empty()) return name + std::string(address);
  return name + " " + std::string(address);
}

}  // namespace

bool is_placeholder(std::string_view text) {
  // Zeros, or the bits of a UUID that were never set.
  if (text.find_first_not_of("0-. ") == text.npos || text.find_first_not_of("Ff-") == text.npos) return true;
  return std::any_of(std::begin(kPlaceholders), std::end(kPlaceholders),
                     [text](std::string_view placeholder) {
                       return std::equal(text.begin(), text.end(), placeholder.begin(), placeholder.end(),
                                         [](char one, char other) { return lower_case(one) == other; });
                     });
}

std::string machine_identity(const Inventory& inventory) {
  const Element asset = inventory.asset_top();
  const Element system = inventory.snapshot_top().child("System");
  const Profiled output = profiled(inventory);
  return first_of(
      {first_identifying({system.child("Chassis").text("serial"), asset.text("serial-number"), output.serial,
                          system.child("Computer-system").text("uuid"), asset.text("uuid"), output.uuid}),
       name_and_address(inventory), inventory.file_name});
}

std::string machine_name(const Inventory& inventory) {
  return first_of({inventory.asset_top().text("int-name"), inventory.asset_top().text("hostname"),
                   inventory.snapshot_top().text("hostname"), machine_identity(inventory)});
}

std::string scan_timestamp(const Inventory& inventory) {
  const Element asset = inventory.asset_top();
  return first_of(
      {inventory.snapshot_top().text("timestamp"), asset.text("last-scan"), asset.text("scan-attempt")});
}

std::string scan_time(const Inventory& inventory) {
  return utc_of(scan_timestamp(inventory), inventory.snapshot_top().child("Scan").text("calendar"));
}

}  // namespace inv
