#include "collectors/printers.h"

#include "collectors/fields.h"

namespace {

constexpr CopiedField kScannerFields[] = {
    {"scannerUUID", "scanner-uuid"},
    {"scannerapppath", "scanner-app-path"},
};

// A printer with a URI also gets its print server written, even when the item has none.
constexpr CopiedField kConnectionFields[] = {
    {"printserver", "print-server"},
    {"uri", "uri"},
};

constexpr CopiedField kDescriptionFields[] = {
    {"ppd", "ppd"},
    {"ppdfileversion", "ppd-file-version"},
};

// Unlike the firewall's, these switches are written in lower case.
constexpr char kNo[] = "no";

bool is_scanner(const Tag& item) {
  const char* scanner = find_text(item, "scanner");
  return scanner && !equal_text(scanner, kNo);
}

void write_printer(Place& printer, const Tag& item) {
  copy_element_value(printer, item, "_name");
  set_switch(printer, "is-default", item, "default", kNo);
  copy_field(printer, "status", item, "status");
  if (is_scanner(item)) {
    printer.annotate("kind", "MFP");
    copy_fields(printer, item, kScannerFields);
  }
  set_switch(printer, "is-fax", item, "fax", kNo);
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
    if (!find_text(*item, "default")) continue;
    Place printer(printers, "Printer:" + std::to_string(number), Place::Names::distinct);
    write_printer(printer, *item);
  }
}
