// What all pages have in common: one file of HTML that fetches nothing, and whose Content-Security-Policy
// lets no browser try.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "inv/base/text_sink.h"

namespace inv {

// A part of a page, in HTML: a beginning with all sections of it that have an id, and what follows that is
// too large to be kept. `rest` may be missing.
struct PagePart {
  std::string beginning;
  std::function<void(const TextSink&)> rest;
};

// Puts a page with this title (text), a header (HTML) and these parts into the sink, never half a cell of a
// table. A list of the sections stands behind the header.
void framed_page(const std::string& title, const std::string& header, const std::vector<PagePart>& parts,
                 const TextSink& sink);

// "20120118153045.000000+120" as a time that a person reads.
std::string time_element(const std::string& timestamp);

}  // namespace inv
