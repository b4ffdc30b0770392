#include "collectors/memory.h"

#include <string>

#include "collectors/fields.h"
#include "profiler/units.h"

namespace {

// A size text of the item in MB; nothing when the key is missing.
void set_size_in_mb(Place& element, const char* name, const Tag& item, const char* key) {
  if (char* size = find_text(item, key))
    element.set_attribute(name, Value(truncate_to_int64(size_to_mb(size))));
}

// A copy whose text is put on one line.
void copy_as_line(Place& element, const char* name, const Tag& item, const char* key) {
  const Value* value = find_value(item, key);
  if (value) element.set_attribute(name, value->text() ? text_value(value->text()) : *value);
}

void write_module(Place& slot, const Tag& module) {
  copy_as_line(slot, "manuf", module, "dimm_manufacturer");
  set_size_in_mb(slot, "capacity", module, "dimm_size");
  copy_as_line(slot, "mem-type", module, "dimm_type");
  if (const char* speed = find_text(module, "dimm_speed"))
    slot.set_attribute("speed", text_value(copy_word(speed).get()));
  copy_as_line(slot, "bank-label", module, "_name");
}

// Writes the slots one after another and numbers them through.
class SlotWriter {
 public:
  explicit SlotWriter(InventoryTree& snapshot) : memory_(snapshot.root(), "/Memory") {}

  void write_lone_slot(const Tag& item) {
    Place slot = next_slot();
    if (!write_use(slot, item)) return;
    // Systems that list slots outside a bank group do not always know the maker.
    if (!find_value(item, "dimm_manufacturer")) slot.set_attribute("manuf", text_value(""));
    write_module(slot, item);
  }

  void write_bank_group(const Tag& slots) {
    for (const auto& item : slots.children()) {
      if (item->attributes().empty() && item->children().empty()) continue;
      Place slot = next_slot();
      if (write_use(slot, *item)) write_module(slot, *item);
    }
  }

 private:
  Place next_slot() {
    return Place(memory_, "Memory-slot:" + std::to_string(++slot_count_), Place::Names::distinct);
  }

  static bool write_use(Place& slot, const Tag& item) {
    const bool used = text_is(item, "dimm_status", "ok");
    slot.set_attribute("used", yes_no(used));
    return used;
  }

  Place memory_;
  int slot_count_ = 0;
};

}  // namespace

void collect_memory(InventoryTree& snapshot, InventoryTree& profiler) {
  if (const Tag* items = find_items(profiler, "SPMemoryDataType")) {
    SlotWriter writer(snapshot);
    for (const auto& item : items->children()) {
      const Tag* slots = find_items(*item);
      if (slots) {
        writer.write_bank_group(*slots);
      } else {
        writer.write_lone_slot(*item);
      }
    }
  }
  if (const Tag* hardware = first_item(profiler, "SPHardwareDataType")) {
    Place general(snapshot.root(), "/Memory/General-info");
    set_size_in_mb(general, "physical-memory", *hardware, "physical_memory");
  }
}
