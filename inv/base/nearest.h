// Guesses what a slightly misspelt word was meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace inv {

// The word that differs least from a text, the first of several, counting letters that are missing, added,
// replaced or swapped, and capitals. Empty if all differ by more than about a third.
std::string nearest(std::string_view text, const std::vector<std::string_view>& words);

// "; did you mean WORD?", or nothing if the word is empty.
std::string did_you_mean(std::string_view word);

}  // namespace inv
