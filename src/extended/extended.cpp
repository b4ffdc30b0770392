#include "extended/extended.h"

#include "extended/battery.h"
#include "extended/platform.h"
#include "extended/security_platform.h"

namespace {

using Collector = void (*)(InventoryTree& snapshot, const ExtendedInputs& inputs);

constexpr Collector kSteps[] = {
    collect_platform,
    collect_security_platform,
    collect_battery,
};

}  // namespace

void collect_extended(InventoryTree& snapshot, const ExtendedInputs& inputs) {
  for (const Collector collect : kSteps) collect(snapshot, inputs);
}
