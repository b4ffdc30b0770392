// Words that identify nobody, although machines and people are called so: replacing "System" or "Mac"
// wherever it stands would destroy paths and the system's own name, and who knows the word could try keys on
// its pseudonym.
#pragma once

#include <string_view>

namespace inv {

// Whether a name, in any case, is one that many Macs have: volumes as the system calls them ("Macintosh HD",
// also with a number behind it, and its " - Data"), accounts, models, usual folders, and the small words of
// names.
bool is_common_word(std::string_view name);

// Whether a folder below a person's own is one that the system makes there: "Library", "Desktop", "Caches".
bool is_usual_folder(std::string_view name);

}  // namespace inv
