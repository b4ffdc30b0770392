#include "extended/software_details.h"

#include <string>

#include "extended/facts.h"

namespace {

constexpr CopiedField kFields[] = {{"arch_kind", "architecture"}, {"obtained_from", "source"}};
constexpr CopiedField kListsOfPeople[] = {{"signed_by", "signed-by"}};

}  // namespace

void collect_software_details(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  const Tag* items = find_items(inputs.profiler, "SPApplicationsDataType");
  if (!items) return;
  Place details(snapshot.root(), "/Software-details");
  int number = 0;
  for (const auto& item : items->children()) {
    Place application(details, "Soft:" + std::to_string(++number), Place::Names::distinct);
    copy_fields(application, *item, kFields);
    if (inputs.with_people) copy_lists(application, *item, kListsOfPeople);
  }
}
