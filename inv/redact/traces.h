// What any text gives away about a machine and its people: in paths, URLs and mail addresses.
#pragma once

#include <string_view>
#include <vector>

namespace inv {

// Whether an identifier is replaced throughout a file, or only where it was found: replacing the name of a
// folder "Reports" everywhere would remove the word from all other texts.
enum class Reach { everywhere, in_place };

struct Trace {
  std::string_view text;  // a view into the text that it was found in
  Reach reach = Reach::everywhere;
};

// Ordered by where they begin, and not nested except for the two names of a folder:
//   /Users/jane/Plans/x.app     the account "jane" and, in place, "Plans"; not the system's own folders, nor
//                               a bundle, which is named after its application
//   /Users/Jane Doe/x           a folder's name may contain a blank: "Jane Doe", and "Jane"
//   /Volumes/Backup             the volume
//   /Network/Servers/HOST, /net/HOST, scheme://HOST:631, name@HOST.example
//                               the host, without its port, and the domain in it; the name and the password
//   /var/folders/zz/x81n        what the system makes of an account's UUID
//   .../0D5A7CE8-...            UUIDs in paths
// Hosts of the system's maker and common words (see common_words.h) are not traces.
std::vector<Trace> traces_in(std::string_view text);

}  // namespace inv
