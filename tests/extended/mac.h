// For the tests of the extended collectors: a Mac built in a few lines, and what a collector writes about it.
#pragma once

#include <string>

#include "extended/inputs.h"
#include "tests/collectors/item_lists.h"
#include "tests/collectors/tree_helpers.h"

// The two raw trees and the tools' outputs, at first empty.
struct Mac {
  ExtendedInputs inputs() { return {profiler, additional, tools, with_people}; }

  InventoryTree profiler = empty_profiler();
  InventoryTree additional = InventoryTree(1, "Additional");
  ToolOutputs tools;
  bool with_people = true;
};

using ExtendedCollector = void (*)(InventoryTree&, const ExtendedInputs&);

// What a collector writes into an empty snapshot.
inline std::string written(ExtendedCollector collect, Mac& mac) {
  InventoryTree snapshot = empty_snapshot();
  collect(snapshot, mac.inputs());
  return tree_text(snapshot);
}

// Wraps lines in those of the top element.
inline std::string in_snapshot(const std::string& lines) { return "+Snapshot=\n" + lines + "-\n"; }
constexpr char kEmptySnapshot[] = "*Snapshot=\n";
