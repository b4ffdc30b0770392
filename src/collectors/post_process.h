// The pipeline that turns the profiler tree into the snapshot.
#pragma once

#include "driver/base/omissions.h"
#include "zxml/zXML.h"

// Runs all collectors in their fixed order: a later one may overwrite what an earlier one wrote. With
// `verbose` the number of each step and its end are printed on standard output, at once, since a calling
// program reads along.
//
// A step that is left out is announced like any other, but collects nothing.
void post_process(InventoryTree& snapshot, InventoryTree& profiler, bool verbose,
                  const Omissions& omitted = {});
