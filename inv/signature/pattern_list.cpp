#include "inv/signature/pattern_list.h"

#include "inv/base/wildcards.h"

namespace inv {

bool matches_list(std::string_view list, std::string_view text) {
  bool matched = false;
  while (!list.empty()) {
    std::string_view pattern = list.substr(0, list.find(','));
    list.remove_prefix(pattern.size() < list.size() ? pattern.size() + 1 : list.size());
    const bool negated = pattern.substr(0, 1) == "!";
    if (negated) pattern.remove_prefix(1);
    if (!matches(pattern, text, Wildcards::star_and_mark)) continue;
    if (negated) return false;
    matched = true;
  }
  return matched;
}

}  // namespace inv
