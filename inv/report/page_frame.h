// What all pages have in common: one HTML file that fetches nothing, with a Content-Security-Policy that
// prevents it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "inv/base/text_sink.h"

namespace inv {

// A part of a page, in HTML: a beginning with all of its sections that have an id, and the rest, which is too
// large to be kept in memory and may be missing.
struct PagePart {
  std::string beginning;
  std::function<void(const TextSink&)> rest;
};

// Writes a page with this title (text), a header (HTML) and these parts to the sink, never half a table cell.
// A list of the sections follows the header.
void framed_page(const std::string& title, const std::string& header, const std::vector<PagePart>& parts,
                 const TextSink& sink);

// "20120118153045.000000+120" as a readable time.
std::string time_element(const std::string& timestamp);

}  // namespace inv
