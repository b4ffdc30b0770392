// The facts of an overview in the words of the summary and the report. Texts from the file are unchanged: the
// caller makes them safe for a terminal or a page.
#pragma once

#include <string>
#include <vector>

#include "inv/facts/overview.h"

namespace inv {

// The non-empty texts, separated by commas.
std::string joined(const std::vector<std::string>& texts);

// "MacBook Pro, Mac16,8"
std::string model_text(const Overview& overview);
// "2 x Quad-Core Intel Xeon", "12 cores (8 P + 4 E)", "2660 MHz" and the chip, as far as they are known.
std::vector<std::string> processor_texts(const Processor& processor);
// "48 GB LPDDR5, soldered"; empty if the size is unknown.
std::string memory_text(const Memory& memory);
size_t filled_slots(const Memory& memory);
// "APPLE SSD AP1024, 1.0 TB, NVMe, SSD"
std::string disk_text(const Disk& disk);
// "Color LCD, built-in, 1512 x 982 @ 120.00Hz, 3024 x 1964 pixels, main"
std::string display_text(const Display& display);
// "Ethernet, en0, 192.0.2.17, 00-00-5E-00-53-1A"
std::string adapter_text(const Adapter& adapter);
// "150 applications", "2 accounts", ...; what only an extended scan counts is left out if it is 0. Empty
// without a snapshot.
std::vector<std::string> content_counts(const Overview& overview);

}  // namespace inv
