#include "inv/report/page_frame.h"

#include <map>

#include "inv/base/base64.h"
#include "inv/facts/overview.h"
#include "inv/report/html.h"
#include "inv/report/page.h"

namespace inv {
namespace {

std::string source_of(std::string_view asset) { return "'sha256-" + base64(sha256(asset)) + "'"; }

// Allows the page's style and script by their digests; nothing else runs, and nothing is fetched.
std::string policy() {
  return "default-src 'none'; style-src " + source_of(kPageStyle) + "; script-src " + source_of(kPageScript) +
         "; base-uri 'none'; form-action 'none'";
}

// Takes the text from `start` up to the next `end` off the front; empty if there is none.
std::string_view take_between(std::string_view& html, std::string_view start, std::string_view end) {
  const size_t first = html.find(start);
  if (first == html.npos) return {};
  html.remove_prefix(first + start.size());
  const std::string_view text = html.substr(0, html.find(end));
  html.remove_prefix(text.size());
  return text;
}

// A list of the sections. Values are escaped, so none of them looks like a section.
std::string contents_list(const std::vector<PagePart>& parts) {
  std::string items;
  for (const PagePart& part : parts) {
    std::string_view html = part.beginning;
    for (;;) {
      const std::string_view id = take_between(html, "<section id=\"", "\"");
      if (id.empty()) break;
      const std::string_view title = take_between(html, "<h2>", "<");
      items.append("<li><a href=\"#").append(id).append("\">");
      items.append(title.substr(0, title.find_last_not_of(' ') + 1)).append("</a></li>\n");
    }
  }
  return items.empty() ? ""
                       : "<nav class=\"contents\" aria-label=\"Contents\"><ul>\n" + items + "</ul></nav>\n";
}

void write_body(const std::string& header, const std::vector<PagePart>& parts, const TextSink& sink) {
  sink("<header>" + header + "</header>\n" + contents_list(parts) + "<main>\n");
  for (const PagePart& part : parts) {
    sink(part.beginning);
    if (part.rest) part.rest(sink);
  }
  sink("</main>\n");
}

}  // namespace

// The page with its placeholders filled in. Inserted text is not searched again, since a value may contain
// "{{body}}".
void framed_page(const std::string& title, const std::string& header, const std::vector<PagePart>& parts,
                 const TextSink& sink) {
  const std::map<std::string_view, std::string> contents = {{"policy", policy()},
                                                            {"title", escaped(title)},
                                                            {"style", std::string(kPageStyle)},
                                                            {"script", std::string(kPageScript)}};
  std::string_view rest = kPage;
  for (size_t open = rest.find("{{"); open != rest.npos; open = rest.find("{{")) {
    const size_t close = rest.find("}}", open);
    const std::string_view place = rest.substr(open + 2, close - open - 2);
    sink(rest.substr(0, open));
    if (place == "body") {
      write_body(header, parts, sink);
    } else {
      sink(contents.at(place));
    }
    rest.remove_prefix(close + 2);
  }
  sink(rest);
}

std::string time_element(const std::string& timestamp) {
  return "<time>" + escaped(readable_time(timestamp)) + "</time>";
}

}  // namespace inv
