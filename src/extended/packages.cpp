#include "extended/packages.h"

#include <string>

#include "extended/facts.h"

namespace {

constexpr CopiedField kFields[] = {
    {"install_version", "version"},
    {"install_date", "install-date"},
    {"package_source", "source"},
};

}  // namespace

void collect_packages(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* items = find_items(inputs.additional, "SPInstallHistoryDataType");
  if (!items) return;
  Place packages(snapshot.root(), "/Packages");
  int number = 0;
  for (const auto& item : items->children()) {
    Place package(packages, "Package:" + std::to_string(++number), Place::Names::distinct);
    copy_element_value(package, *item, "_name");
    copy_fields(package, *item, kFields);
  }
}
