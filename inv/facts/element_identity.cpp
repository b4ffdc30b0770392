#include "inv/facts/element_identity.h"

#include "inv/base/wildcards.h"
#include "inv/facts/paths.h"

namespace inv {
namespace {

// The attribute that means "the element's own value" in the table below.
constexpr std::string_view kOwnValue = "";

// The kinds of elements that are numbered as they come. What an element is known by are the attributes that
// it has, together; one that has none of them is known by its number after all.
struct IdentityRow {
  std::string_view parent;
  std::string_view name;
  std::string_view attributes[3];
  size_t count;
};
constexpr IdentityRow kIdentities[] = {
    {"/Software", "Soft:*", {"location"}, 1},
    {"/Storage/Physical-disks", "HDD:*", {"serial"}, 1},
    {"/Storage/Physical-disks", "Removable:*", {"serial", kOwnValue}, 2},
    {"/Storage/Physical-disks", "CD:*", {"model"}, 1},
    {"/Storage/Logical-disks", "partition:*", {"mount-point", kOwnValue}, 2},
    {"/Network/Adapters", "net-adapter:*", {"bsd-device-name", "type"}, 2},
    {"/User-accounts", "usr-acc:*", {"id"}, 1},
    {"/Video/Monitors", "Monitor:*", {"id", "serial-digital", "serial"}, 3},
    {"/Video/Video-devices", "Video-adapter:*", {kOwnValue}, 1},
    {"/Peripherals/USB", "Device:*", {"vendor-id", "product-id", "serial-number"}, 3},
    {"/Peripherals/Printers", "Printer:*", {"uri", kOwnValue}, 2},
    {"/System/PowerManagement", "Profile:*", {kOwnValue}, 1},
    {"/Security/Firewall/Services", "service:*", {kOwnValue}, 1},
    {"/Security/Firewall/Apps", "app:*", {kOwnValue}, 1},
    {"/Processes", "process:*", {"pid"}, 1},
};

const IdentityRow* row_for(Element element) {
  // Elements of these kinds lie two or three levels below the top.
  if (element.depth() < 2 || element.depth() > 3) return nullptr;
  for (const IdentityRow& row : kIdentities) {
    if (matches(row.name, element.name()) && path_of(element.parent()) == row.parent) return &row;
  }
  return nullptr;
}

}  // namespace

std::string identity_of(Element element) {
  const IdentityRow* row = row_for(element);
  std::string identity;
  for (size_t i = 0; row && i < row->count; ++i) {
    const std::string_view part =
        row->attributes[i] == kOwnValue ? element.value() : element.text(row->attributes[i]);
    if (part.empty()) continue;
    if (!identity.empty()) identity += ' ';
    identity += part;
  }
  return identity.empty() ? std::string(element.name()) : identity;
}

}  // namespace inv
