// What somebody may have meant who wrote a word a little wrong.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace inv {

// The word that differs least from a text, the first of several: by letters missing, added, exchanged for
// others or for their neighbours, and by capitals. Empty when none differs by less than about a third.
std::string nearest(std::string_view text, const std::vector<std::string_view>& words);

// "; did you mean WORD?" Nothing when there is no such word.
std::string did_you_mean(std::string_view word);

}  // namespace inv
