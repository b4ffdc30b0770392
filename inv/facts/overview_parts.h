// The larger parts of an overview, each read from the snapshot's top element.
#pragma once

#include <string>
#include <string_view>

#include "inv/base/byte_reader.h"
#include "inv/facts/overview.h"

namespace inv {

inline std::string text(Element element, std::string_view name) { return std::string(element.text(name)); }

// 0 for anything but a number.
inline uint64_t number(std::string_view digits) { return parse_decimal(digits).value_or(0); }

// Disks and volumes: /Storage.
void read_storage(Element top, Overview& overview);
// Displays and graphics: /Video.
void read_video(Element top, Overview& overview);
// Battery, firewall, protection and management: /Battery, /Security.
void read_condition(Element top, Overview& overview);

}  // namespace inv
