// Patterns: texts in which some characters match others.
#pragma once

#include <string_view>

namespace inv {

enum class Wildcards {
  star,           // "*" matches any text, the empty one included
  star_and_mark,  // "?" as well, for any one byte
};

bool matches(std::string_view pattern, std::string_view text, Wildcards wildcards = Wildcards::star);

}  // namespace inv
