// Words that identify nobody, although machines and people have such names: replacing "System" or "Mac"
// everywhere would destroy paths and the system's own name, and anyone who knows the word could try keys on
// its pseudonym.
#pragma once

#include <string_view>

namespace inv {

// Whether many Macs have this name, in upper or lower case: default volume names ("Macintosh HD", also with a
// number or " - Data" appended), accounts, models, usual folders, and the small words in names.
bool is_common_word(std::string_view name);

// Whether a folder in a home folder is one that the system makes there: "Library", "Desktop", "Caches".
bool is_usual_folder(std::string_view name);

}  // namespace inv
