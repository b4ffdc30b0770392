// The form of dates that Apple's property-list parser reads.
#pragma once

#include <optional>
#include <string_view>

namespace plist {

// "[-]Y-MM-DDTHH:MM:SSZ", the year with one to nine digits, as seconds since 2001-01-01 00:00:00 UTC. Ranges
// are not checked: month 13 is the next January, 30 February the first or second of March, 25:61:61 goes on
// into the next day; only month 0 is January.
std::optional<double> parse_date(std::string_view text);

}  // namespace plist
