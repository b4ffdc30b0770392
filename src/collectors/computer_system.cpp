#include "collectors/computer_system.h"

#include "collectors/fields.h"
#include "collectors/platform_uuid.h"
#include "collectors/power_management.h"
#include "profiler/units.h"

namespace {

constexpr char kManufacturer[] = "Apple Inc.";

void collect_computer(InventoryTree& snapshot, const InventoryTree& profiler) {
  const Tag* hardware = first_item(profiler, "SPHardwareDataType");
  if (!hardware) return;

  Place computer(snapshot.root(), "/System/Computer-system");
  copy_field(computer, "model", *hardware, "machine_model");
  computer.set_attribute("manuf", text_value(kManufacturer));
  const Value* uuid = find_value(*hardware, "platform_UUID");
  computer.set_attribute("uuid", uuid ? *uuid : text_value(query_platform_uuid().get()));

  Place chassis(snapshot.root(), "/System/Chassis");
  chassis.set_attribute("manuf", text_value(kManufacturer));
  copy_field(chassis, "serial", *hardware, "serial_number");
}

// The slots in the order found, numbered by their position in the data type or in their group.
class SlotWriter {
 public:
  explicit SlotWriter(InventoryTree& snapshot) : slots_(snapshot.root(), "/System/Mem-slots") {}

  void write(const Tag& slot, int number) {
    // A number beyond all earlier ones cannot have been written yet.
    const bool is_new = number > highest_;
    if (is_new) highest_ = number;
    CompoundField field(slots_, "mem-slot:" + std::to_string(number),
                        is_new ? Place::Names::distinct : Place::Names::may_repeat);
    const bool used = text_is(slot, "dimm_status", "ok");
    field.set_member("used", yes_no(used));
    if (used) write_capacity(field, slot);
  }

 private:
  static void write_capacity(CompoundField& field, const Tag& slot) {
    char* size = find_text(slot, "dimm_size");
    if (!size) return;
    const int64_t megabytes = truncate_to_int64(size_to_mb(size));
    field.set_member("capacity", Value(megabytes), "base-value", byte_count_text(size_to_bytes(size)).get());
  }

  Place slots_;
  int highest_ = 0;
};

void collect_memory_slots(InventoryTree& snapshot, const InventoryTree& profiler) {
  const Tag* items = find_items(profiler, "SPMemoryDataType");
  if (!items) return;
  SlotWriter writer(snapshot);
  int number = 0;
  for (const auto& item : items->children()) {
    ++number;
    const Tag* group = find_items(*item);
    if (!group) {
      writer.write(*item, number);
      continue;
    }
    int number_in_group = 0;
    for (const auto& slot : group->children()) writer.write(*slot, ++number_in_group);
  }
}

}  // namespace

void collect_system(InventoryTree& snapshot, InventoryTree& profiler) {
  collect_computer(snapshot, profiler);
  collect_memory_slots(snapshot, profiler);
  collect_power_management(snapshot, profiler);
}
