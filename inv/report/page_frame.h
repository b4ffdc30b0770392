// What all pages have in common: one file of HTML that fetches nothing, and whose Content-Security-Policy
// lets no browser try.
#pragma once

#include <string>

namespace inv {

// A page with this title (text), and a header and contents (HTML). A list of the sections with an id stands
// between them.
std::string framed_page(const std::string& title, const std::string& header, const std::string& main);

// "20120118153045.000000+120" as a time that a person reads.
std::string time_element(const std::string& timestamp);

}  // namespace inv
