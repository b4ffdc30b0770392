// USB devices and removable disks, from the profiler's SPUSBDataType and, for a removable disk's model, from
// `diskutil info`.
#pragma once

#include "zxml/zXML.h"

// Walks all buses with collect_usb_device and one counter that starts at 0. To be run after collect_storage,
// whose disks and partitions keep their numbers.
void collect_usb(InventoryTree& snapshot, InventoryTree& profiler);

// Writes one entry of the USB tree. Keys may carry a letter and an underscore in front ("a_product_id").
// - A disk with removable media becomes "/Storage/Physical-disks/Removable:%d" with its volumes at
//   "/Storage/Logical-disks/partition:%d", each under the next free number. What is attached to it is not
//   read.
// - A hub, that is any other entry with items of its own, is replaced by these items, at any depth.
// - Any other entry is a device: it raises the counter by one and becomes "/Peripherals/USB/Device:%d" with
// it. A fact whose key is missing is not written.
void collect_usb_device(InventoryTree& snapshot, const Tag& entry, int& counter);

// The media name in the output of `diskutil info`, without the blanks and the word " Media" around it; the
// empty text when nothing else is there, null when the output has no such line.
Text parse_media_name(const char* diskutil_output);
