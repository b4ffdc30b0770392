#include "collectors/printers.h"

#include "collectors/fields.h"

namespace {

constexpr CopiedField kScannerFields[] = {
    {"scannerUUID", "scanner-uuid"},
    {"scannerapppath", "scanner-app-path"},
};

// A printer with a URI has its print server told beside it, whether or not the server stands in the item.
constexpr CopiedField kConnectionFields[] = {
    {"printserver", "print-server"},
    {"uri", "uri"},
};

constexpr CopiedField kDescriptionFields[] = {
    {"ppd", "ppd"},
    {"ppdfileversion", "ppd-file-version"},
};

// The profiler writes these switches in lower case; whatever is not "no" counts as yes.
bool is_yes(const Tag& item, const char* key) { return find_value(item, key) && !text_is(item, key, "no"); }

void write_printer(Place& printer, const Tag& item) {
  copy_element_value(printer, item, "_name");
  printer.set_attribute("is-default", yes_no(is_yes(item, "default")));
  copy_field(printer, "status", item, "status");
  if (is_yes(item, "scanner")) {
    printer.annotate("kind", "MFP");
    copy_fields(printer, item, kScannerFields);
  }
  if (find_value(item, "fax")) printer.set_attribute("is-fax", yes_no(is_yes(item, "fax")));
  copy_field(printer, "driver-version", item, "driverversion");
  if (find_value(item, "uri")) copy_fields(printer, item, kConnectionFields);
  copy_fields(printer, item, kDescriptionFields);
}

}  // namespace

void collect_printers(InventoryTree& snapshot, InventoryTree& profiler) {
  const Tag* items = find_items(profiler, "SPPrintersDataType");
  if (!items) return;
  Place printers(snapshot.root(), "/Peripherals/Printers");
  int number = 0;
  for (const auto& item : items->children()) {
    ++number;
    if (!find_value(*item, "default")) continue;
    Place printer(printers, "Printer:" + std::to_string(number), Place::Names::distinct);
    write_printer(printer, *item);
  }
}
