// Patterns in which some characters match any others.
#pragma once

#include <string_view>

namespace inv {

enum class Wildcards {
  star,           // "*" matches any text, the empty one included
  star_and_mark,  // also "?", for any single byte
};

bool matches(std::string_view pattern, std::string_view text, Wildcards wildcards = Wildcards::star);

}  // namespace inv
