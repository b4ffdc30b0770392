// What any text gives away of a machine and its people, wherever it stands: in paths, URLs and mail
// addresses.
#pragma once

#include <string_view>
#include <vector>

namespace inv {

// Whether an identifier is replaced in all of a file, or only where it was found: a folder that somebody
// calls "Reports" would take the word out of every other text.
enum class Reach { everywhere, in_place };

struct Trace {
  std::string_view text;  // a view into the text that it was found in
  Reach reach = Reach::everywhere;
};

// In the order of their beginnings, and not one in another but for the two names of a folder:
//   /Users/jane/Plans/x.app     the account "jane" and, in place, "Plans"; folders that the system makes
//   stay,
//                               as does a bundle, which is what its application is called
//   /Users/Jane Doe/x           a folder's name may go on after a blank: "Jane Doe", and "Jane"
//   /Volumes/Backup             the volume
//   /Network/Servers/HOST, /net/HOST, scheme://HOST:631, name@HOST.example
//                               the host, without its port, and the domain in it; the name and the password
//   /var/folders/zz/x81n        what the system makes of an account's UUID
//   .../0D5A7CE8-...            UUIDs in paths
// The hosts of the system's maker are nobody's, and so are common words (see common_words.h).
std::vector<Trace> traces_in(std::string_view text);

}  // namespace inv
