// The zone in which dates are formatted.
#pragma once

#include <string>

namespace cf {

// The name of the zone that TZ names (null when it is not set; a colon in front is ignored). If no such zone
// exists, it is the machine's own zone, to which the link leads, as on a Mac.
std::u16string time_zone(const char* tz, const char* link = "/etc/localtime");

}  // namespace cf
